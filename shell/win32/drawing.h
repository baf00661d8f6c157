#pragma once

#include <windows.h>

#include <objidl.h>

// <gdiplus.h> calls min and max unqualified.
#include <algorithm>
namespace Gdiplus {
using std::max;
using std::min;
}  // namespace Gdiplus
#include <gdiplus.h>

#include <string>

namespace tonadex::shell {

inline Gdiplus::Color Colour(COLORREF colour, int alpha = 255) {
  return {static_cast<BYTE>(alpha), GetRValue(colour), GetGValue(colour), GetBValue(colour)};
}

void Fill(HDC context, const RECT& box, COLORREF colour);
// Fills and frames a rounded rectangle; without a frame when its width is 0.
void RoundedBox(HDC context, const RECT& box, int radius, COLORREF fill, COLORREF frame,
                int frameWidth);
// The frame alone.
void RoundedFrame(HDC context, const RECT& box, int radius, COLORREF frame, int frameWidth);

// Draws a text; `format` as for DrawTextW.
void Words(HDC context, const std::wstring& text, RECT box, HFONT font, COLORREF colour,
           UINT format);

// Size of a text wrapped to a width, and its width when not wrapped; pixels.
inline constexpr int kAnyWidth = 0x7FFF;
SIZE TextSize(HFONT font, const std::wstring& text, int width);
int TextWidth(HFONT font, const std::wstring& text);

}  // namespace tonadex::shell
