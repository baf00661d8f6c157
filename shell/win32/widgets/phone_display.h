#pragma once

#include <windows.h>

#include <optional>
#include <string>
#include <vector>

#include "app/display_layout.h"
#include "shell/win32/theme.h"

namespace tonadex::shell {

// The result on a phone's display, for reading and copying. The group under the pointer, or reached
// with the keys, is marked. Texts are Windows-1252.
class PhoneDisplay {
 public:
  PhoneDisplay(HWND parent, int id, const Theme& theme);

  HWND window() const { return window_; }
  // `counted`: groups are keys or notes, numbered at the margin and in columns.
  void SetResult(const std::string& text, std::vector<app::ResultGroup> groups, bool counted);
  // Sets the text shown while there is no result.
  void SetInvitation(const std::string& invitation);
  // The font size in device-independent pixels, kSmallestType to kLargestType.
  void SetPixelSize(int pixels);
  int PixelSize() const { return display_.PixelSize(); }
  // The size that the user chose, 0 while the text has the largest size that fits.
  int ChosenPixelSize() const { return display_.ChosenPixelSize(); }
  // Marks the group whose note sounds and scrolls it into view; -1 removes that mark.
  void Follow(int group);
  void ThemeChanged();
  // The result itself, as "Copiar" gives it.
  const std::string& Text() const { return display_.result(); }

 private:
  std::optional<LRESULT> Handle(UINT message, WPARAM wide, LPARAM data);
  app::TypeMeasure MeasureType(int pixels) const;
  void LayOut();
  RECT TextArea() const;  // within the window
  void Draw();
  std::string Source(const app::DisplayText& shown) const;
  bool MoveMark(WPARAM key);
  void GoToMark();
  void Mark(int group);
  void MarkAt(POINT place);
  void PaintMark() const;
  void CopySelection() const;

  HWND window_;
  const Theme& theme_;
  app::ResultDisplay display_;
  std::string invitation_;
};

}  // namespace tonadex::shell
