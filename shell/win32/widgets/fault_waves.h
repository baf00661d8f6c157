#pragma once

#include <windows.h>

#include <vector>

#include "core/text.h"
#include "shell/win32/theme.h"

namespace tonadex::shell {

// Underlines ranges of a multi-line edit control in waves, over what the control itself paints. Its
// text must end lines in CR LF and its font must be of one width.
class FaultWaves {
 public:
  FaultWaves(HWND edit, const Theme& theme);
  // Of the text that the control holds now.
  void Show(const std::vector<core::TextRange>& faults);

 private:
  void Paint() const;
  void DrawUnder(HDC context, core::TextRange fault, int bottom) const;

  HWND edit_;
  const Theme& theme_;
  std::vector<core::TextRange> faults_;
};

}  // namespace tonadex::shell
