#pragma once

#include <span>
#include <string>

#include "app/melody_notes.h"
#include "app/picture.h"
#include "phones/keypads.h"
#include "phones/typing_steps.h"

// The printed sheet (A4) for typing a melody into a phone. Texts are Windows-1252.
namespace tonadex::app {

inline constexpr double kSheetWidth = 595.3, kSheetHeight = 841.9;
inline constexpr double kSheetMargin = 42.5;  // 15 mm

struct TypingSheet {
  std::string title;             // "PequeñaSerenata, para Nokia"
  const phones::Keypad* keypad;  // nullptr for none
  std::span<const phones::TypingStep> steps;
  const Drawing& drawing;
};

// Lays out title, drawing and keypad, then the numbered groups in columns, top to bottom, in a
// monospaced font: in the largest size that fits one page, else in the smallest on several pages.
Paper LayOutTypingSheet(const TypingSheet& sheet);

}  // namespace tonadex::app
