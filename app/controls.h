#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "app/list_rows.h"
#include "core/text.h"

// The controls of the window model: plain values that a shell draws and that handlers change.
namespace tonadex::app {

// What a control is drawn with; how that looks is the shell's.
enum class Look {
  kLabel,       // caption
  kNavigation,  // button of the navigation row: picture above the words; `checked` marks one
  kLink,        // button of the same row: small picture beside small words
  kButton,
  kPrimary,  // button: what its page is there for, the one in the accent
  kLine,     // text of one line
  kReading,  // the same, never typed into
  kArea,     // text of several lines
  kNotices,  // the same, never typed into
  kDisplay,  // the phone's display: the result; `value` is its type in px, 0 for what fits
  kList,     // rows, all in view; its text may be one that no row holds
  kComboBox,
  kPage,      // web view that follows links
  kBanner,    // web view that reports them
  kPicture,   // an icon alone
  kDrawing,   // a melody's drawing
  kSlider,    // `value`
  kKeys,      // the phone's keys
  kBusyLine,  // caption; moves while `checked`
  kTimer,     // enabled, interval
  kStorage,   // text; scratch storage, never shown and bound to no widget
};

enum class Tone { kText, kMuted, kGood, kBad };

// One struct for all kinds, so that a page is an array of pointers to members. Texts are
// Windows-1252, line ends in them CR LF; a shell takes CR and LF alone for line ends, too.
struct Control {
  bool visible = true;
  bool enabled = true;
  std::string caption;     // "&" stands before the mnemonic character
  std::string text;        // what the box shows; a shell copies the user's typing in here
  ListRows rows;           // of list and combo boxes
  int listIndex = -1;      // selected row, 0-based, -1 for none
  std::string address;     // web view: where it was last told to go
  std::string invitation;  // what stands in it while it is empty
  std::size_t cursor = 0;  // of a text area: characters before the cursor
  std::vector<core::TextRange> faults;  // of a text area: what to underline in `text`, in order
  int value = 0;                        // of a slider and of the display
  bool checked = false;
  Tone tone = Tone::kText;     // of a label
  std::uint32_t interval = 0;  // timer: milliseconds between two ticks while enabled

  // The selected row's text, "" when none is selected.
  std::string_view SelectedText() const;
  // The selected row's item data, 0 when none is selected.
  std::int32_t SelectedData() const;
  // Of a list, the text that no row holds and that is shown as one more row; "" for none.
  std::string_view LooseText() const;
  // Drops rows, selection and, as the combo boxes do, the text.
  void Clear();
  void AddRow(std::string_view rowText, std::int32_t itemData = 0, bool hint = false);
  // Selects a row, -1 for none; a combo box's text follows. An index without row selects none.
  void Select(int index);
  // A combo box's text as set by the program: any text; the row that holds it is selected, if any.
  void SetText(std::string_view newText);
};

}  // namespace tonadex::app
