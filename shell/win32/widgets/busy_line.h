#pragma once

#include <windows.h>

#include "shell/win32/theme.h"

namespace tonadex::shell {

// A slim line that moves while a request runs.
class BusyLine {
 public:
  BusyLine(HWND parent, const Theme& theme);

  HWND window() const { return window_; }
  void SetBusy(bool busy);
  // Moves on; to be called while the request waits.
  void Step();

 private:
  void Paint();

  HWND window_;
  const Theme& theme_;
  bool busy_ = false;
};

}  // namespace tonadex::shell
