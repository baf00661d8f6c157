#pragma once

#include <windows.h>

#include <optional>
#include <string>
#include <vector>

#include "app/controls.h"
#include "shell/win32/display_layout.h"
#include "shell/win32/theme.h"

namespace tonadex::shell {

// The result on a phone's display: read and copied, never typed into. The arrow keys mark group
// after group.
class PhoneDisplay {
 public:
  PhoneDisplay(HWND parent, int id, const Theme& theme);

  HWND window() const { return window_; }
  // The control's text in its groups; `counted`: they are keys to press, numbered at the margin.
  void Draw(const app::Control& control, std::vector<app::ResultGroup> groups, bool counted);
  int PixelSize() const { return pixels_; }  // device-independent
  void ThemeChanged();

 private:
  std::optional<LRESULT> Handle(UINT message, WPARAM wide);
  void LayOut();
  void Show();
  void Format(TextRange range, DWORD mask, COLORREF colour);
  DisplayText LaidOut(int pixels, int width) const;
  void MarkGroup(int step);
  void CopySelection() const;

  HWND window_;
  const Theme& theme_;
  std::string result_, invitation_;
  std::vector<app::ResultGroup> groups_;
  bool counted_ = false;
  int wanted_ = 0;  // size of the type, 0 for what fits
  int pixels_ = kSmallestFit;
  DisplayText shown_;
};

}  // namespace tonadex::shell
