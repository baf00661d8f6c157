#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "app/list_rows.h"
#include "core/text.h"

// The controls of the window model: plain values that a shell draws and that handlers change.
namespace tonadex::app {

// The type of a control; the shell decides how it looks. The buttons follow one another here,
// and so do the text boxes (IsButton, IsTextBox).
enum class Look {
  kLabel,       // caption
  kNavigation,  // button of the navigation row: picture above the words; `checked` marks one
  kLink,        // button of that row: small picture beside small text
  kCard,        // button: picture, caption and, in a small font below it, text
  kButton,
  kPrimary,  // button: the main action of its page, in the accent colour while `checked`
  kChoice,   // button: one of several to choose from; `checked` marks the chosen one
  kMark,     // small button with a short text in the colour of its tone
  kLine,     // text of one line
  kReading,  // text of one line, read-only
  kArea,     // text of several lines
  kNotices,  // text of several lines, read-only
  kDisplay,  // the phone's display with the result; `value`: font size in px, 0 for what fits
  kList,     // rows; its text may match none of them
  kComboBox,
  kPage,      // web view that follows links
  kBanner,    // web view that raises kNavigation instead of following links
  kPicture,   // an icon alone
  kDrawing,   // a melody's drawing; `listIndex`: the marked note if it follows no playback
  kShapes,    // a picture of shapes that can be clicked; `text` describes it
  kSlider,    // `value`
  kKeys,      // the phone's keys
  kBusyLine,  // caption; moves while `checked`
  kTimer,     // enabled, interval
  kStorage,   // text; scratch storage, never shown and bound to no widget
};

constexpr bool IsButton(Look look) {
  return look >= Look::kNavigation && look <= Look::kMark;
}
constexpr bool IsTextBox(Look look) {
  return look >= Look::kLine && look <= Look::kNotices;
}

enum class Tone { kText, kMuted, kGood, kBad };

// One struct for all types, so that a page is an array of pointers to members. Texts are
// Windows-1252 with CR LF as line end; a shell also accepts CR or LF alone.
struct Control {
  bool visible = true;
  bool hasRoom = true;  // false: nothing of it shows on this page, although it is visible
  bool enabled = true;
  std::string caption;      // "&" precedes the mnemonic character
  std::string whyDisabled;  // the tooltip of a button meanwhile; "" for its usual one
  std::string text;         // of a box; a shell copies what the user types in here
  ListRows rows;            // of list and combo boxes
  ListRows shown;           // of a list: the text shown instead of each row; or none
  int listIndex = -1;       // selected row, 0-based, -1 for none
  std::string address;      // web view: the last address requested
  std::string invitation;   // shown while the control is empty (lines of text, lists, displays)
  std::size_t cursor = 0;   // of a text area: characters before the cursor
  std::vector<core::TextRange> faults;  // of a text area: what to underline in `text`, in order
  int value = 0;  // of a slider and of the display; of shapes: the `hit` of the last click
  bool checked = false;
  int marked = -1;             // of the display: the group to mark while a melody sounds
  Tone tone = Tone::kText;     // of a label or a mark
  std::uint32_t interval = 0;  // timer: milliseconds between two ticks while enabled

  bool Shows() const { return visible && hasRoom; }
  // The selected row; text "" and item data 0 when none is selected.
  ListRow Selected() const;
  std::string_view SelectedText() const { return Selected().text; }
  std::int32_t SelectedData() const { return Selected().itemData; }
  // The element that belongs to the selected row; nullptr when there is none.
  template <typename T>
  T* SelectedOf(std::vector<T>& elements) const {
    const bool none = listIndex < 0 || std::cmp_greater_equal(listIndex, elements.size());
    return none ? nullptr : &elements[static_cast<std::size_t>(listIndex)];
  }
  // The lines that a list shows: one for each row and, selected, one for a text that no row holds.
  std::size_t Lines() const { return rows.size() + (LooseText().empty() ? 0 : 1); }
  int SelectedLine() const;
  std::string LineAt(std::size_t line) const;
  std::string HelpAt(std::size_t line) const;  // its tooltip
  bool IsHint(std::size_t line) const { return line < rows.size() && rows[line].hint; }
  bool HasLinesOf(const Control& other) const;
  // Drops rows, selection and, as the combo boxes do, the text.
  void Clear();
  void AddRow(std::string_view rowText, std::int32_t itemData = 0, bool hint = false);
  // Selects a row, -1 for none; a combo box's text follows. An index without row selects none.
  void Select(int index);
  // A combo box's text as set by the program: any text; the row that holds it is selected, if any.
  void SetText(std::string_view newText);

 private:
  // The text that no row holds; "" for none.
  std::string_view LooseText() const;
};

// The content of a text box (UTF-8) as the model holds it: the characters that Windows-1252 lacks
// are replaced by those meant, "♯" by "#".
std::string TextOfBox(std::string_view utf8);

}  // namespace tonadex::app
