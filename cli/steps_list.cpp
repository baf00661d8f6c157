#include "cli/steps_list.h"

#include <algorithm>
#include <array>
#include <vector>

namespace tonadex::cli {
namespace {

using Row = std::array<std::string, 5>;

std::array<std::size_t, 5> Widths(std::span<const Row> rows) {
  std::array<std::size_t, 5> widths{};
  for (const Row& row : rows) {
    for (std::size_t i = 0; i < row.size(); ++i) {
      widths[i] = std::max(widths[i], row[i].size());
    }
  }
  return widths;
}

}  // namespace

std::string StepsList(std::span<const phones::TypingStep> steps) {
  if (steps.empty()) {
    return {};
  }
  const bool display =
      std::ranges::any_of(steps, [](const auto& step) { return !step.display.empty(); });
  std::vector<Row> rows = {{"", "Grupo", "Teclas", "Nota", display ? "En la pantalla" : ""}};
  for (const phones::TypingStep& step : steps) {
    rows.push_back({std::to_string(rows.size()), step.group, phones::KeysInWords(step), step.words,
                    step.display});
  }
  const auto widths = Widths(rows);
  std::string list;
  for (const Row& row : rows) {
    list.append(list.empty() ? "" : "\n").append(widths[0] - row[0].size(), ' ').append(row[0]);
    for (std::size_t i = 1; i < row.size(); ++i) {
      list.append("  ").append(row[i]).append(widths[i] - row[i].size(), ' ');
    }
    list.erase(list.find_last_not_of(' ') + 1);
  }
  return list;
}

}  // namespace tonadex::cli
