#pragma once

#include <windows.h>

#include <string>

#include "app/control_table.h"
#include "app/look.h"
#include "shell/win32/handles.h"

// Fonts, measures and colours of the windows.
namespace tonadex::shell {

using namespace app::look;

using Colours = app::look::Colours<COLORREF>;

// The system's light or dark setting and its contrast themes, at a screen's resolution.
struct Theme {
  explicit Theme(UINT dotsPerInch);

  // A device-independent distance in pixels.
  int Px(int distance) const { return MulDiv(distance, static_cast<int>(dpi), 96); }

  const Font& FontOf(app::Font font) const;
  int LineOf(app::Font font) const;  // height of a line

  UINT dpi;
  bool dark;
  Colours colours;
  Font body, small, title, heading, mono, bold;
  std::wstring monoName;
  int line, smallLine;  // heights of a line of body text and of small text, pixels
  int control;          // height of buttons and one-line fields
  Brush windowBrush, cardBrush;
};

// A colour as the system takes it.
constexpr COLORREF SystemColour(Rgb colour) {
  return RGB(colour >> 16 & 0xFF, colour >> 8 & 0xFF, colour & 0xFF);
}

// Paints a view's ground: a card, framed in the accent while the view has the focus.
void PaintCard(HWND view, HDC context, const Theme& theme);

// Gives a window of the system's own (title bar, scroll bars) the theme's light or dark look.
void ApplyTheme(HWND window, const Theme& theme);

}  // namespace tonadex::shell
