#pragma once

#include <cstdint>
#include <span>
#include <string_view>

#include "app/form1.h"

// The main window as tables: every control, every handler, every page. Shells bind by them and
// tests walk them.
namespace tonadex::app {

struct ControlInfo {
  std::string_view name;  // as in Form1; objectName in a shell
  ControlKind kind;
  Control Form1::*member;
  std::string_view caption;  // at the start; Windows-1252, "&" before the mnemonic
  std::string_view help;     // tooltip, Windows-1252; "" for none
  std::string_view spoken;   // accessible name; "" where its own text or a label says it
};

// In tab order within each page; the navigation row first.
std::span<const ControlInfo> Controls();

// The row of a control by name, nullptr when there is none.
const ControlInfo* FindControl(std::string_view name);

enum class Event {
  kClick,       // a button pressed, a row selected by the user, a brand chosen
  kActivate,    // Enter or a double click on a list row
  kEnter,       // Enter in a text box
  kChange,      // the text changed, by typing or otherwise by the user
  kTick,        // the timer
  kNavigation,  // a click in the web view wanted to lead elsewhere
};

struct HandlerInfo {
  Control Form1::*control;
  Event event;
  void (Form1::*handler)();
};

// All handlers but the key filter txtcompoTempo_KeyPress, which takes an argument, and those of
// the window itself (Form_Load, Form_QueryUnload).
std::span<const HandlerInfo> Handlers();

// The controls of a page, empty for a number that is no page. List1 belongs to two pages and
// WebBrowser1 to two.
std::span<Control Form1::*const> PageControls(std::int16_t page);

// The navigation row, left to right, and the page of each button (0 for cmdayuda).
struct NavigationInfo {
  Control Form1::*button;
  std::int16_t page;
  char digit;  // pressed with Ctrl; '\0' for the button of F1
};
std::span<const NavigationInfo> NavigationRow();
bool IsNavigation(Control Form1::*control);

}  // namespace tonadex::app
