#pragma once

#include <windows.h>

#include <string>

#include "shell/common/look.h"
#include "shell/win32/handles.h"

// Type, spacing and colour of the program, chosen once here.
namespace tonadex::shell {

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

  UINT dpi;
  bool dark;
  Colours colours;
  Font body, small, title, mono, bold;
  std::wstring monoName;
  int line;       // height of a line of body text, pixels
  int smallLine;  // of small text
  int control;    // height of buttons and one-line fields
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
