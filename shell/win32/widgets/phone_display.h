#pragma once

#include <windows.h>

#include <optional>
#include <string>
#include <vector>

#include "shell/win32/display_layout.h"
#include "shell/win32/theme.h"

namespace tonadex::shell {

// The result on a phone's display: read and copied, never typed into. The arrow keys mark group
// after group.
class PhoneDisplay {
 public:
  PhoneDisplay(HWND parent, int id, const Theme& theme);

  HWND window() const { return window_; }
  // `counted`: groups are keys to press, numbered at the margin.
  void SetResult(const std::string& text, std::vector<app::ResultGroup> groups, bool counted);
  // What it says while there is no result.
  void SetInvitation(const std::string& invitation);
  // Device-independent, kSmallestType to kLargestType.
  void SetPixelSize(int pixels);
  int PixelSize() const { return pixels_; }
  void ThemeChanged();
  // The result itself, as "Copiar" gives it.
  const std::string& Text() const { return result_; }

 private:
  std::optional<LRESULT> Handle(UINT message, WPARAM wide);
  void LayOut();
  std::size_t Columns() const;
  std::string Source() const;
  void MarkGroup(int step);
  void CopySelection() const;

  HWND window_;
  const Theme& theme_;
  int pixels_ = 20;
  std::string result_, invitation_;
  std::vector<app::ResultGroup> groups_;
  bool counted_ = false;
  std::size_t columns_ = 0;  // of the present layout
  DisplayText shown_;
};

}  // namespace tonadex::shell
