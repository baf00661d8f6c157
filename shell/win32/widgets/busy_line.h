#pragma once

#include <windows.h>

#include "shell/win32/theme.h"

namespace tonadex::shell {

// A slim line under the row of buttons. While a request runs it grows over the top of the page,
// says so and moves.
class BusyLine {
 public:
  BusyLine(HWND parent, const Theme& theme);

  HWND window() const { return window_; }
  void SetBusy(bool busy);
  // Moves on; to be called while the request waits.
  void Step();

 private:
  int TallHeight() const;
  void KeepTall(WINDOWPOS& place);
  void Paint();

  HWND window_;
  const Theme& theme_;
  bool busy_ = false;
  int slim_ = 0;  // its height as laid out
};

}  // namespace tonadex::shell
