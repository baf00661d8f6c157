#pragma once

#include <windows.h>

#include <string>

#include "app/control_table.h"
#include "app/look.h"
#include "shell/win32/handles.h"

// Type, spacing and colour of the program, chosen once here.
namespace tonadex::shell {

using namespace app::look;

struct Colours {
  COLORREF window, card, border, hover;
  COLORREF text, muted;
  COLORREF accent;                                   // the one accent: marks and the sounding note
  COLORREF accentText;                               // on a ground of the accent
  COLORREF accentWash;                               // a quiet ground for what is selected
  COLORREF good, bad;                                // the live check's sentence
  COLORREF displayGround, displayInk, displayFaint;  // the phone's display
};

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

// `part` of `over` on `under`, 0 to 1.
COLORREF Blend(COLORREF over, COLORREF under, double part);

// Gives a window of the system's own (title bar, scroll bars) the theme's light or dark look.
void ApplyTheme(HWND window, const Theme& theme);

}  // namespace tonadex::shell
