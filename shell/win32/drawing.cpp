#include "shell/win32/drawing.h"

namespace tonadex::shell {
namespace {

using Gdiplus::REAL;

void AddRoundedBox(Gdiplus::GraphicsPath& path, REAL x, REAL y, REAL width, REAL height,
                   REAL radius) {
  const REAL turn = 2 * radius;
  path.AddArc(x, y, turn, turn, 180, 90);
  path.AddArc(x + width - turn, y, turn, turn, 270, 90);
  path.AddArc(x + width - turn, y + height - turn, turn, turn, 0, 90);
  path.AddArc(x, y + height - turn, turn, turn, 90, 90);
  path.CloseFigure();
}

// `fill`: nullptr for none.
void DrawBox(HDC context, const RECT& box, int radius, const COLORREF* fill, COLORREF frame,
             int frameWidth) {
  Gdiplus::Graphics graphics(context);
  graphics.SetSmoothingMode(Gdiplus::SmoothingModeAntiAlias);
  // Integer coordinates are pixel centres.
  const REAL half = static_cast<REAL>(frameWidth - 1) / 2;
  Gdiplus::GraphicsPath path;
  AddRoundedBox(path, static_cast<REAL>(box.left) + half, static_cast<REAL>(box.top) + half,
                static_cast<REAL>(box.right - box.left - frameWidth),
                static_cast<REAL>(box.bottom - box.top - frameWidth), static_cast<REAL>(radius));
  if (fill != nullptr) {
    const Gdiplus::SolidBrush brush(Colour(*fill));
    graphics.FillPath(&brush, &path);
  }
  if (frameWidth > 0) {
    const Gdiplus::Pen pen(Colour(frame), static_cast<REAL>(frameWidth));
    graphics.DrawPath(&pen, &path);
  }
}

}  // namespace

void Fill(HDC context, const RECT& box, COLORREF colour) {
  SetDCBrushColor(context, colour);
  FillRect(context, &box, static_cast<HBRUSH>(GetStockObject(DC_BRUSH)));
}

void RoundedBox(HDC context, const RECT& box, int radius, COLORREF fill, COLORREF frame,
                int frameWidth) {
  DrawBox(context, box, radius, &fill, frame, frameWidth);
}

void RoundedFrame(HDC context, const RECT& box, int radius, COLORREF frame, int frameWidth) {
  DrawBox(context, box, radius, nullptr, frame, frameWidth);
}

void Words(HDC context, const std::wstring& text, RECT box, HFONT font, COLORREF colour,
           UINT format) {
  const HGDIOBJ previous = SelectObject(context, font);
  SetBkMode(context, TRANSPARENT);
  SetTextColor(context, colour);
  DrawTextW(context, text.c_str(), static_cast<int>(text.size()), &box, format);
  SelectObject(context, previous);
}

SIZE TextSize(HFONT font, const std::wstring& text, int width) {
  const HDC context = GetDC(nullptr);
  const HGDIOBJ previous = SelectObject(context, font);
  RECT box{0, 0, width, 0};
  DrawTextW(context, text.c_str(), static_cast<int>(text.size()), &box,
            DT_CALCRECT | DT_WORDBREAK | DT_EDITCONTROL | DT_NOPREFIX);
  SelectObject(context, previous);
  ReleaseDC(nullptr, context);
  return {box.right, box.bottom};
}

int TextWidth(HFONT font, const std::wstring& text) {
  return TextSize(font, text, kAnyWidth).cx;
}

}  // namespace tonadex::shell
