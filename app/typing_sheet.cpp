#include "app/typing_sheet.h"

#include <algorithm>
#include <cstddef>
#include <utility>

#include "app/pdf.h"
#include "core/windows1252.h"

namespace tonadex::app {
namespace {

using namespace core::literals;

constexpr double kWidth = kSheetWidth - 2 * kSheetMargin;
constexpr double kFoot = kSheetHeight - kSheetMargin;
constexpr double kLine = 1.3;  // line height as a multiple of the font size
constexpr double kTitlePoints = 20, kPointStep = 2;
constexpr double kLeastKeyPoints = 18,
                 kMostKeyPoints = 28;  // of groups as wide as the page or less
constexpr double kNumberPoints = 9, kNumberGap = 5, kColumnGap = 16;
constexpr double kKeyWidth = 80, kKeyHeight = 36, kKeyGap = 4, kKeyPadding = 3;
constexpr double kLabelPoints = 12, kWordPoints = 8;
constexpr double kDrawingHeight = 150;  // without a keypad beside it
constexpr double kBlockGap = 16;        // between the parts of the page

constexpr std::string_view kHeldKeys = u8"(3): mantén pulsada la tecla 3 segundos"_w;
static_assert(phones::kHoldSeconds == 3);
constexpr double kRemarkPoints = 10;

bool HasHeldKey(const phones::TypingStep& step) {
  return std::ranges::any_of(step.keys, &phones::KeyPress::hold);
}

// A text with its upper left corner at (x, y), shrunk to the width `most`.
Shape Text(std::string text, double x, double y, double points, double most, bool mono = false) {
  const double width = TextWidth(text, points, mono);
  const double fitting = width > most ? points * most / width : points;
  return {.box = {x, y, std::min(width, most), fitting * kLine},
          .size = fitting,
          .text = std::move(text),
          .bold = true,
          .mono = mono};
}

double KeypadHeight(const phones::Keypad& keypad) {
  return keypad.rows * (kKeyHeight + kKeyGap) - kKeyGap;
}

void AppendKeypad(Picture& page, const phones::Keypad& keypad, double x, double y) {
  for (const phones::KeypadKey& key : keypad.keys) {
    const Box box = {x + key.column * (kKeyWidth + kKeyGap), y + key.row * (kKeyHeight + kKeyGap),
                     kKeyWidth, kKeyHeight};
    page.push_back(Frame(box, Ink::kMuted, 1, kKeyPadding));
    const double left = box.x + kKeyPadding, most = kKeyWidth - 2 * kKeyPadding;
    page.push_back(Text(std::string(key.signs), left, box.y + kKeyPadding, kLabelPoints, most));
    if (!key.word.empty()) {
      page.push_back(Text(std::string(key.word), left, box.y + kKeyPadding + kLabelPoints * kLine,
                          kWordPoints, most));
    }
  }
}

// The whole melody within the box: time to the right, pitch upward.
void AppendDrawing(Picture& page, const Drawing& drawing, const Box& place) {
  constexpr double kNoteHeight = 5, kGap = 1, kLeastWidth = 1;
  const double perMs = place.width / std::max(1.0, drawing.length);
  const double step = (place.height - kNoteHeight) / std::max(1, drawing.highest - drawing.lowest);
  for (const DrawnNote& note : drawing.notes) {
    if (!note.pause) {
      page.push_back(
          Filled({place.x + note.start * perMs, place.y + (drawing.highest - note.pitch) * step,
                  std::max(kLeastWidth, note.length * perMs - kGap), kNoteHeight},
                 Ink::kMuted));
    }
  }
}

// The layout of the groups in one font size.
struct Grid {
  double points, numbers, groups;  // font size; widths of the widest number and group
  std::size_t columns;

  double RowHeight() const { return points * kLine; }
  double ColumnWidth() const { return numbers + kNumberGap + groups + kColumnGap; }
  std::size_t Rows(double height) const {
    return std::max(std::size_t{1}, static_cast<std::size_t>(height / RowHeight()));
  }
};

Grid GridFor(const TypingSheet& sheet, double points) {
  Grid grid{points, TextWidth(std::to_string(sheet.steps.size()), kNumberPoints, false), 0, 1};
  for (const phones::TypingStep& step : sheet.steps) {
    grid.groups = std::max(grid.groups, TextWidth(step.group, points, true));
  }
  grid.groups = std::min(grid.groups, kWidth - grid.numbers - kNumberGap);
  grid.columns = std::max(std::size_t{1},
                          static_cast<std::size_t>((kWidth + kColumnGap) / grid.ColumnWidth()));
  return grid;
}

// The grid of the largest font size at which all groups fit the height, else of the smallest.
Grid FittingGrid(const TypingSheet& sheet, double height) {
  double points = kMostKeyPoints;
  Grid grid = GridFor(sheet, points);
  while (points > kLeastKeyPoints && grid.Rows(height) * grid.columns < sheet.steps.size()) {
    points -= kPointStep;
    grid = GridFor(sheet, points);
  }
  return grid;
}

// Appends the groups from `first` on that fit below `top`; returns the first that does not.
std::size_t AppendGroups(Picture& page, const TypingSheet& sheet, std::size_t first, double top,
                         const Grid& grid) {
  const std::size_t rows = grid.Rows(kFoot - top);
  const std::size_t end = std::min(sheet.steps.size(), first + rows * grid.columns);
  for (std::size_t i = first; i < end; ++i) {
    const std::size_t column = (i - first) / rows, row = (i - first) % rows;
    const double x = kSheetMargin + static_cast<double>(column) * grid.ColumnWidth();
    const double y = top + static_cast<double>(row) * grid.RowHeight();
    const double lower =
        (grid.points - kNumberPoints) * kLine;  // puts the smaller number on the same base line
    page.push_back(Text(std::to_string(i + 1), x, y + lower, kNumberPoints, grid.numbers));
    page.push_back(Text(sheet.steps[i].group, x + grid.numbers + kNumberGap, y, grid.points,
                        grid.groups, true));
  }
  return end;
}

}  // namespace

Paper LayOutTypingSheet(const TypingSheet& sheet) {
  std::vector<Picture> pages(1);
  Picture& front = pages.front();
  front.push_back(Text(sheet.title, kSheetMargin, kSheetMargin, kTitlePoints, kWidth));
  const double head = kSheetMargin + kTitlePoints * kLine + kBlockGap;
  double width = kWidth, height = kDrawingHeight;
  if (sheet.keypad != nullptr) {
    const double keypad = sheet.keypad->columns * (kKeyWidth + kKeyGap) - kKeyGap;
    width -= keypad + kBlockGap;
    height = KeypadHeight(*sheet.keypad);
    AppendKeypad(front, *sheet.keypad, kSheetMargin + kWidth - keypad, head);
  }
  AppendDrawing(front, sheet.drawing, {kSheetMargin, head, width, height});
  double top = head + height + kBlockGap;
  if (std::ranges::any_of(sheet.steps, HasHeldKey)) {
    const Shape& held =
        front.emplace_back(Text(std::string(kHeldKeys), kSheetMargin, top, kRemarkPoints, kWidth));
    top = held.box.bottom() + kBlockGap / 2;
  }
  const Grid grid = FittingGrid(sheet, kFoot - top);
  std::size_t next = AppendGroups(front, sheet, 0, top, grid);
  while (next < sheet.steps.size()) {
    next = AppendGroups(pages.emplace_back(), sheet, next, kSheetMargin, grid);
  }
  return {sheet.title, kSheetWidth, kSheetHeight, std::move(pages)};
}

}  // namespace tonadex::app
