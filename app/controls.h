#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "app/list_rows.h"

// The controls of the window model: plain values that a shell draws and that handlers change.
namespace tonadex::app {

enum class ControlKind {
  kLabel,          // caption
  kButton,         // caption; navigation and page buttons
  kPictureButton,  // caption; drawn with an icon as well
  kTextBox,        // text, one line
  kTextArea,       // text, several lines
  kResultBox,      // text, several lines, read by the user and never typed into
  kListBox,        // rows, listIndex
  kComboBox,       // text (any, also one that no row holds), rows, listIndex
  kWebView,        // address, navigations
  kTimer,          // enabled, interval
  kStorage,        // text; scratch storage, never shown and bound to no widget
};

// One struct for all kinds, so that a page is an array of pointers to members. Texts are
// Windows-1252, line ends in them CR LF; a shell takes CR and LF alone for line ends, too.
struct Control {
  bool visible = true;
  bool enabled = true;
  std::string caption;         // "&" stands before the mnemonic character, if useMnemonic
  bool useMnemonic = true;     // false: an "&" in the caption is an "&", as in a melody's title
  std::string text;            // what the box shows; a shell copies the user's typing in here
  ListRows rows;               // of list and combo boxes
  int listIndex = -1;          // selected row, 0-based, -1 for none
  std::string address;         // web view: where it was last told to go
  int navigations = 0;         // web view: how often; a rise means (re)load `address`
  std::uint32_t interval = 0;  // timer: milliseconds between two ticks while enabled

  // The selected row's text, "" when none is selected.
  std::string_view SelectedText() const;
  // The selected row's item data, 0 when none is selected.
  std::int32_t SelectedData() const;
  // Drops rows, selection and, as the combo boxes do, the text.
  void Clear();
  void AddRow(std::string_view rowText, std::int32_t itemData = 0, bool hint = false);
  // Selects a row, -1 for none; a combo box's text follows. An index without row selects none.
  void Select(int index);
  // A combo box's text as set by the program: any text; the row that holds it is selected, if any.
  void SetText(std::string_view newText);
};

// A caption without its mnemonic mark: "&Inicio" gives "Inicio".
std::string PlainCaption(std::string_view caption);

}  // namespace tonadex::app
