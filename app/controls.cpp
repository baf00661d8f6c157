#include "app/controls.h"

#include <utility>

namespace tonadex::app {
namespace {

constexpr std::string_view kNothingChosen = "0";  // the saved phone before any choice

}  // namespace

std::string_view Control::SelectedText() const {
  return listIndex < 0 || std::cmp_greater_equal(listIndex, rows.size())
             ? std::string_view()
             : rows[static_cast<std::size_t>(listIndex)].text;
}

std::int32_t Control::SelectedData() const {
  return listIndex < 0 || std::cmp_greater_equal(listIndex, rows.size())
             ? 0
             : rows[static_cast<std::size_t>(listIndex)].itemData;
}

std::string_view Control::LooseText() const {
  return listIndex < 0 && text != kNothingChosen ? std::string_view(text) : std::string_view();
}

void Control::Clear() {
  rows.clear();
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
  int row = 0;
  for (const ListRow& each : rows) {
    if (each.text == newText) {
      break;
    }
    ++row;
  }
  listIndex = std::cmp_less(row, rows.size()) ? row : -1;
  text = newText;
}

}  // namespace tonadex::app
