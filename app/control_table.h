#pragma once

#include <cstdint>
#include <span>
#include <string_view>

#include "app/controls.h"
#include "app/pages/page.h"
#include "app/picture.h"
#include "app/words.h"

// The main window as one table with a row for each control. Shells create and bind the controls by
// it. The position of a control, and so the page that it belongs to, is in app/layout.h.
namespace tonadex::app {

class Form1;
struct Drawing;

enum class Event {
  kClick,       // a button pressed, a row selected by the user, a brand chosen
  kActivate,    // Enter or a double click on a list row
  kEnter,       // Enter in a text box
  kChange,      // the text or value changed, by typing or otherwise by the user
  kTick,        // the timer
  kNavigation,  // a link in the web view was clicked
};

using Handler = void (Form1::*)();

struct EventHandler {
  Event event = Event::kClick;
  Handler handler = nullptr;
};

// An entry of the menu on a list's selected row; one without a caption is a separator.
struct MenuItem {
  std::string_view caption = {};   // "&" before the mnemonic
  std::string_view shortcut = {};  // "F2"; works while the list has the focus
  Handler handler = nullptr;
  bool needsRow = true;   // greyed while no row is selected
  const char* icon = "";  // of an entry that is also a button on each row
};

enum class Font { kBody, kSmall, kTitle, kHeading };

// What is saved of a control between two runs: its `value` if there is a range, else its text.
struct KeptValue {
  std::string_view name = {};  // in the file of the state; "" for nothing
  int lowest = 0, highest = 0;

  constexpr bool IsNumber() const { return lowest < highest; }
};

// Texts are Windows-1252.
struct ControlInfo {
  std::string_view name;  // as in Form1; objectName in a shell
  Control Form1::*member;
  Look look;
  std::string_view caption = {};  // at the start; "&" before the mnemonic
  const char* icon = "";          // name of the picture, the same in every shell
  std::string_view help = {};     // tooltip
  std::string_view spoken = {};   // accessible name; "" where its text or a label says it
  EventHandler on = {}, also = {};
  Control Form1::*field = nullptr;  // gets the focus by the mnemonic of a label
  Font font = Font::kBody;
  Tone tone = Tone::kText;
  bool right = false;              // a right-aligned label
  std::int16_t leadsTo = kNoPage;  // the page of a navigation button
  // Keys that click it while it is shown and enabled, separated by blanks: "Ctrl+1", "Left
  // Backspace". A text box that has the focus keeps its own, a focused button Space and Return.
  std::string_view shortcut = {};
  Control Form1::*below = nullptr;       // of a line: the list that the Down key leads to
  Drawing Form1::*drawing = nullptr;     // of a kDrawing,
  std::span<const MenuItem> menu = {};   // of a list
  std::int16_t menuPage = kNoPage;       // the page on which it has the menu
  Sounding sounds = Sounding::kNothing;  // which follows this melody while it sounds
  Picture (Form1::*picture)(double width, double height) const = nullptr;  // of a kShapes
  KeptValue kept = {};
};

// Builders for the rows.
constexpr ControlInfo WithKeys(ControlInfo row, std::string_view shortcut) {
  return row.shortcut = shortcut, row;
}
constexpr ControlInfo Kept(ControlInfo row, const KeptValue& kept) {
  return row.kept = kept, row;
}
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
// Its caption changes, so its help is its tooltip alone.
constexpr ControlInfo Mark(std::string_view name, Control Form1::*member, std::string_view help,
                           Handler click) {
  return Button(Look::kMark, name, member, {}, "", help, click);
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

// Opens melody files on every page, also where no button does.
inline constexpr std::string_view kOpenKeys = "Ctrl+O";
constexpr ControlInfo Open(Look look, std::string_view name, Control Form1::*member,
                           std::string_view caption, Handler click) {
  return Button(look, name, member, caption, "", words::kOpenHelp, click, words::kOpenHelp);
}

constexpr ControlInfo View(std::string_view name, Control Form1::*member, Drawing Form1::*drawing,
                           Sounding sounds) {
  ControlInfo view = Row(Look::kDrawing, name, member, words::kDrawing);
  view.drawing = drawing;
  view.sounds = sounds;
  return view;
}

constexpr ControlInfo Shapes(std::string_view name, Control Form1::*member,
                             Picture (Form1::*picture)(double, double) const, Handler click) {
  ControlInfo row = Row(Look::kShapes, name, member, {}, {Event::kClick, click});
  row.picture = picture;
  return row;
}

// Every control of the window. No row holds txtcompoTempo_KeyPress and keyRow_KeyPressed, which
// take arguments, nor the handlers of the window itself (Form_Load, Form_QueryUnload).
std::span<const ControlInfo> Controls();

const ControlInfo& InfoOf(Control Form1::*member);
// nullptr for an unknown name.
const ControlInfo* FindControl(std::string_view name);
// nullptr when the control does not handle the event.
Handler HandlerOf(const ControlInfo& info, Event event);

}  // namespace tonadex::app
