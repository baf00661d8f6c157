#pragma once

#include <span>
#include <string>

#include "app/melody_notes.h"
#include "app/picture.h"
#include "phones/keypads.h"
#include "phones/typing_steps.h"

// The sheet to type a melody from, on A4. Texts are Windows-1252.
namespace tonadex::app {

inline constexpr double kSheetWidth = 595.3, kSheetHeight = 841.9;
inline constexpr double kSheetMargin = 42.5;   // 15 mm
inline constexpr double kLeastKeyPoints = 18;  // of the groups, unless one is wider than the page

struct TypingSheet {
  std::string title;             // "PequeñaSerenata, para Nokia"
  const phones::Keypad* keypad;  // nullptr for none
  std::span<const phones::TypingStep> steps;
  const Drawing& drawing;
};

// Title, drawing and keypad, then the numbered groups in columns, top to bottom, in type of one
// width: in the largest with which they fit the page, else in the smallest on as many pages as they
// need.
Paper LayOutTypingSheet(const TypingSheet& sheet);

}  // namespace tonadex::app
