#pragma once

#include <windows.h>

#include <optional>
#include <string>

#include "app/melody_drawing.h"
#include "shell/win32/drawing.h"
#include "shell/win32/theme.h"

namespace tonadex::shell {

// A melody as a picture: time to the right, pitch upward. A long one is scrolled with the arrow
// keys, the wheel and the bar.
class MelodyView {
 public:
  MelodyView(HWND parent, const Theme& theme);

  HWND window() const { return window_; }
  // `words` say the picture; `invitation` stands in an empty one.
  void SetDrawing(const app::Drawing& drawing, const std::string& words,
                  const std::wstring& invitation);
  // Marks the note that sounds at `ms` and keeps it in view; negative for none.
  void SetPosition(double ms);

 private:
  std::optional<LRESULT> Handle(UINT message, WPARAM wide, LPARAM data);
  void Paint();
  void PaintGround(Gdiplus::Graphics& graphics) const;
  void PaintNote(Gdiplus::Graphics& graphics, HDC context, const app::DrawnNote& note,
                 bool sounds) const;
  Gdiplus::RectF Staff() const;
  Gdiplus::RectF NoteBox(const app::DrawnNote& note) const;
  double PixelsPerMs() const;
  int Width() const;
  void PlaceScrollBar();
  void ScrollTo(int position);
  void Scroll(WORD how);

  HWND window_;
  const Theme& theme_;
  app::Drawing drawing_;
  std::wstring invitation_;
  int sounding_ = -1;
  int scrolled_ = 0;  // pixels
};

}  // namespace tonadex::shell
