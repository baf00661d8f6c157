#pragma once

#include <cstdint>
#include <span>
#include <string_view>

#include "app/controls.h"
#include "app/pages/page.h"
#include "app/words.h"

// The main window as one table: a row says all about a control. Shells bind by it and tests walk
// it. Where a control stands, and so which page it belongs to, is in app/layout.h.
namespace tonadex::app {

class Form1;
struct Drawing;

enum class Event {
  kClick,       // a button pressed, a row selected by the user, a brand chosen
  kActivate,    // Enter or a double click on a list row
  kEnter,       // Enter in a text box
  kChange,      // the text or value changed, by typing or otherwise by the user
  kTick,        // the timer
  kNavigation,  // a click in the web view wanted to lead elsewhere
};

using Handler = void (Form1::*)();

struct EventHandler {
  Event event = Event::kClick;
  Handler handler = nullptr;
};

enum class Font { kBody, kSmall, kTitle, kHeading };

// Texts are Windows-1252.
struct ControlInfo {
  std::string_view name;  // as in Form1; objectName in a shell
  Control Form1::*member;
  Look look;
  std::string_view caption = {};    // at the start; "&" before the mnemonic
  const char* icon = "";            // name of the picture, the same in every shell
  std::string_view help = {};       // tooltip
  std::string_view spoken = {};     // accessible name; "" where its text or a label says it
  EventHandler on = {}, also = {};  // a choice without handler is drawn all the same
  Control Form1::*field = nullptr;  // what the mnemonic of a label leads to
  Font font = Font::kBody;
  Tone tone = Tone::kText;
  bool right = false;                    // a label's words, at the right end of its place
  std::int16_t leadsTo = kNoPage;        // the page of a navigation button
  std::string_view shortcut = {};        // "Ctrl+1"
  Drawing Form1::*drawing = nullptr;     // what a kDrawing shows,
  Sounding sounds = Sounding::kNothing;  // and what sounds when it moves
};

// What the rows are written with.
constexpr ControlInfo Row(Look look, std::string_view name, Control Form1::*member,
                          std::string_view spoken = {}, EventHandler on = {},
                          EventHandler also = {}, std::string_view help = {},
                          const char* icon = "") {
  return {name, member, look, {}, icon, help, spoken, on, also};
}
constexpr ControlInfo Button(Look look, std::string_view name, Control Form1::*member,
                             std::string_view caption, const char* icon, std::string_view help,
                             Handler click, std::string_view spoken = {}) {
  return {name, member, look, caption, icon, help, spoken, {Event::kClick, click}};
}
// A label with a mnemonic that leads to its field.
constexpr ControlInfo Label(std::string_view name, Control Form1::*member, std::string_view caption,
                            Control Form1::*field) {
  return {name, member, Look::kLabel, caption, "", {}, {}, {}, {}, field};
}
constexpr ControlInfo Words(std::string_view name, Control Form1::*member, std::string_view caption,
                            Font font = Font::kBody, Tone tone = Tone::kText, bool right = false) {
  return {name, member, Look::kLabel, caption, "", {}, {}, {}, {}, nullptr, font, tone, right};
}

constexpr ControlInfo View(std::string_view name, Control Form1::*member, Drawing Form1::*drawing,
                           Sounding sounds) {
  ControlInfo view = Row(Look::kDrawing, name, member, words::kDrawing);
  view.drawing = drawing;
  view.sounds = sounds;
  return view;
}

// Every control of the window. The key filter txtcompoTempo_KeyPress and keyRow_KeyPressed, which
// take arguments, and the handlers of the window itself (Form_Load, Form_QueryUnload) are in no
// row.
std::span<const ControlInfo> Controls();

const ControlInfo& InfoOf(Control Form1::*member);
// nullptr when there is none of that name.
const ControlInfo* FindControl(std::string_view name);
// The handler of an event, nullptr when there is none.
Handler HandlerOf(const ControlInfo& info, Event event);

}  // namespace tonadex::app
