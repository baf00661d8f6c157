#pragma once

#include <windows.h>

#include <optional>
#include <string>

#include "app/melody_layout.h"
#include "shell/win32/drawing.h"
#include "shell/win32/theme.h"

namespace tonadex::shell {

// A melody as a picture: time to the right, pitch upward. A long one is scrolled with the arrow
// keys, the wheel and the bar.
class MelodyView {
 public:
  MelodyView(HWND parent, int id, const Theme& theme);

  HWND window() const { return window_; }
  // `invitation` is shown while there are no notes.
  void SetDrawing(const app::Drawing& drawing, const std::wstring& invitation);
  // Marks the note that sounds at `ms` and keeps it in view; negative for none.
  void SetPosition(double ms) { Show(picture_.Follow(ms)); }
  // Marks a note by its index, -1 for none, in the same way.
  void Mark(int note) { Show(picture_.Mark(note)); }

 private:
  std::optional<LRESULT> Handle(UINT message, WPARAM wide, LPARAM data);
  void Paint();
  void PaintMark(Gdiplus::Graphics& graphics, HDC context, const app::PictureMark& mark) const;
  void PaintName(HDC context, const app::PictureMark& mark, const Gdiplus::RectF& box) const;
  double Scale() const { return theme_.dpi / 96.0; }  // pixels per device-independent pixel
  Gdiplus::RectF RectOf(const app::Box& box) const;
  void FitPicture();
  void Show(bool changed);
  void ScrollTo(double position);
  void Scroll(WORD how);

  HWND window_;
  const Theme& theme_;
  app::MelodyPicture picture_;
  std::wstring invitation_;
};

}  // namespace tonadex::shell
