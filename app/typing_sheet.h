#pragma once

#include <functional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "app/melody_layout.h"
#include "app/melody_notes.h"
#include "phones/keypads.h"
#include "phones/typing_steps.h"

// The sheet to type a melody from, as data for whatever prints it. Distances and sizes of type are
// points (1/72 inch) from the upper left corner of an A4 page. Texts are Windows-1252.
namespace tonadex::app {

inline constexpr double kSheetWidth = 595.3, kSheetHeight = 841.9;
inline constexpr double kSheetMargin = 42.5;   // 15 mm
inline constexpr double kLeastKeyPoints = 18;  // of the groups, unless one is wider than the page

// One thing to paint.
struct SheetMark {
  enum class Shape {
    kGroup,  // keys to press: heavy type, of one width where there is one
    kText,
    kKey,   // the outline of a key
    kNote,  // a filled note of the drawing
  };
  Shape shape;
  Box box;  // of a text, its line: as wide as measured; the base line is `points` below its top
  double points = 0;
  std::string text = {};
};

using SheetPage = std::vector<SheetMark>;

struct TypingSheet {
  std::string title;  // "PequeñaSerenata, para Nokia"
  const phones::Keypad& keypad;
  std::span<const phones::TypingStep> steps;
  const Drawing& drawing;
};

// Width of a text in heavy type of a size, by the typeface that will print it.
using SheetMeasure = std::function<double(std::string_view text, double points)>;

// Title, drawing and keypad, then the numbered groups in columns, top to bottom: in the largest
// type with which they fit the page, else in the smallest on as many pages as they need.
std::vector<SheetPage> LayOutTypingSheet(const TypingSheet& sheet, const SheetMeasure& measure);

}  // namespace tonadex::app
