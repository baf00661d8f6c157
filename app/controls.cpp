#include "app/controls.h"

#include <algorithm>
#include <iterator>
#include <utility>

#include "core/melody_file.h"
#include "phones/paste_signs.h"

namespace tonadex::app {
namespace {

constexpr std::string_view kNothingChosen = "0";  // the saved phone before any choice

}  // namespace

ListRow Control::Selected() const {
  const bool none = listIndex < 0 || std::cmp_greater_equal(listIndex, rows.size());
  return none ? ListRow() : rows[static_cast<std::size_t>(listIndex)];
}

std::string_view Control::LooseText() const {
  return listIndex < 0 && text != kNothingChosen ? std::string_view(text) : std::string_view();
}

int Control::SelectedLine() const {
  return LooseText().empty() ? listIndex : static_cast<int>(rows.size());
}

std::string Control::LineAt(std::size_t line) const {
  return RowLine(line == rows.size() ? text : (line < shown.size() ? shown : rows)[line].text);
}

// The file, where the line does not name it.
std::string Control::HelpAt(std::size_t line) const {
  return line < shown.size() ? RowLine(core::MelodyFileName(rows[line].text, rows[line].itemData))
                             : LineAt(line);
}

bool Control::HasLinesOf(const Control& other) const {
  return rows == other.rows && shown == other.shown && LooseText() == other.LooseText();
}

void Control::Clear() {
  rows.clear();
  shown.clear();
  listIndex = -1;
  text.clear();
}

void Control::AddRow(std::string_view rowText, std::int32_t itemData, bool hint) {
  rows.push_back({rowText, itemData, hint});
}

void Control::Select(int index) {
  listIndex = index >= 0 && std::cmp_less(index, rows.size()) ? index : -1;
  text = SelectedText();
}

void Control::SetText(std::string_view newText) {
  const auto found = std::ranges::find(rows, newText, &ListRow::text);
  Select(static_cast<int>(std::ranges::distance(rows.begin(), found)));
  text = newText;
}

std::string TextOfBox(std::string_view utf8) {
  return phones::FromPasted(utf8);
}

}  // namespace tonadex::app
