#pragma once

#include <windows.h>

#include <vector>

#include "core/text.h"
#include "shell/win32/theme.h"

namespace tonadex::shell {

// Draws wavy lines under ranges of a multi-line edit control. Its lines must end in CR LF, and its
// font must be monospaced.
class FaultWaves {
 public:
  FaultWaves(HWND edit, const Theme& theme);
  // The ranges are those of the control's present text.
  void Show(const std::vector<core::TextRange>& faults);

 private:
  void Paint() const;
  void DrawUnder(HDC context, core::TextRange fault, int bottom) const;

  HWND edit_;
  const Theme& theme_;
  std::vector<core::TextRange> faults_;
};

}  // namespace tonadex::shell
