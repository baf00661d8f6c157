#pragma once

#include <windows.h>

#include <functional>
#include <optional>
#include <string_view>

#include "app/picture.h"
#include "shell/win32/theme.h"

namespace tonadex::shell {

// A picture of shapes on a card. A click sends BN_CLICKED to the parent, as a button does.
class ShapeView {
 public:
  using Source = std::function<app::Picture(double width, double height)>;

  ShapeView(HWND parent, int id, const Theme& theme);

  HWND window() const { return window_; }
  // The `hit` of the shape that was clicked last, -1 for none.
  int Hit() const { return hit_; }
  // Repaints the picture if it has changed. `spoken` describes it to screen readers (Windows-1252).
  void SetPicture(const Source& source, std::string_view spoken);

 private:
  std::optional<LRESULT> Handle(UINT message, LPARAM lParam);
  void Update();
  void Paint();
  void PaintShape(HDC context, const app::Shape& shape) const;
  void PaintText(HDC context, const app::Shape& shape, const RECT& box, COLORREF ink) const;

  HWND window_;
  const Theme& theme_;
  Source source_;
  app::Picture picture_;
  int hit_ = -1;
};

}  // namespace tonadex::shell
