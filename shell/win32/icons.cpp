#include "shell/win32/icons.h"

#include <algorithm>
#include <sstream>
#include <vector>

#include "shell/win32/drawing.h"

namespace tonadex::shell {
namespace {

using Gdiplus::REAL;

// Strokes on a field of 24 by 24, each a letter and numbers: a path or a filled area (P, A: x y of
// each point), an oval, a disc or a box (O, D, B: left, top, width, height).
struct Icon {
  std::string_view name;
  const char* strokes;
};
constexpr Icon kIcons[] = {
    {"inicio", "P3.5 11 12 4 20.5 11 P6 10 6 20 18 20 18 10 P10 20 10 14.5 14 14.5 14 20"},
    {"buscar", "O4.5 4.5 12 12 P15 15 20.5 20.5"},
    {"repertorio",
     "P9 17.5 9 6 19.5 4 19.5 15.5 O3.8 15.3 5.2 4.4 O14.3 13.3 5.2 4.4 P9 10 19.5 8"},
    {"internet", "O3.5 3.5 17 17 O8.2 3.5 7.6 17 P3.5 12 20.5 12"},
    {"opciones",
     "P4 6.5 13 6.5 P18 6.5 20 6.5 P12 12 20 12 P4 12 7 12 O13.2 4.2 4.6 4.6 O7.2 9.7 4.6 4.6 P4 "
     "17.5 20 17.5"},
    {"ayuda", "O3.5 3.5 17 17 P9.5 9.5 10.5 7.5 13.5 7.5 14.6 9.5 12.2 12 12 13.8 D11 15.8 2 2"},
    {"azar", "B4 4 16 16 D7 7 3 3 D14 7 3 3 D10.5 10.5 3 3 D7 14 3 3 D14 14 3 3"},
    {"bajar", "P12 4 12 15 P7.5 10.8 12 15.3 16.5 10.8 P4.5 19.5 19.5 19.5"},
    {"subir", "P12 15.5 12 4.5 P7.5 8.7 12 4.2 16.5 8.7 P4.5 19.5 19.5 19.5"},
    {"reproducir", "A7.5 4.8 19 12 7.5 19.2"},
    {"convertir", "P4 8 18.5 8 P15 4.5 18.8 8 15 11.5 P20 16 5.5 16 P9 12.5 5.2 16 9 19.5"},
    {"imprimir",
     "P7 9 7 4 17 4 17 9 P7 17 3.5 17 3.5 9 20.5 9 20.5 17 17 17 P7 14 17 14 17 20 7 20 7 14"},
    {"copiar", "B9 9 11 11.5 P15 9 15 3.5 4 3.5 4 15 6 15 9 15"},
    {"guardar",
     "P4 4 16 4 20 8 20 20 4 20 4 4 P8 4 8 8.5 14.5 8.5 14.5 4 P7.5 20 7.5 13.5 16.5 13.5 16.5 20"},
    {"movil", "B6.5 2.8 11 18.4 P9 6 15 6 15 11 9 11 9 6 P9 14.3 15 14.3 P9 17.3 15 17.3"},
};

void Draw(Gdiplus::Graphics& graphics, char kind, const std::vector<REAL>& at,
          const Gdiplus::Pen& pen, const Gdiplus::Brush& brush) {
  std::vector<Gdiplus::PointF> points;
  for (std::size_t i = 0; i + 1 < at.size(); i += 2) {
    points.emplace_back(at[i], at[i + 1]);
  }
  const int count = static_cast<int>(points.size());
  switch (kind) {
    case 'P':
      graphics.DrawLines(&pen, points.data(), count);
      break;
    case 'A':
      graphics.FillPolygon(&brush, points.data(), count);
      break;
    case 'O':
      graphics.DrawEllipse(&pen, at[0], at[1], at[2], at[3]);
      break;
    case 'D':
      graphics.FillEllipse(&brush, at[0], at[1], at[2], at[3]);
      break;
    default:
      graphics.DrawRectangle(&pen, at[0], at[1], at[2], at[3]);
  }
}

}  // namespace

void DrawIcon(HDC context, std::string_view name, const RECT& square, COLORREF colour) {
  constexpr REAL kField = 24, kPenWidth = 1.75F;
  const Icon* icon = std::ranges::find(kIcons, name, &Icon::name);
  if (icon == std::end(kIcons)) {
    return;
  }
  Gdiplus::Graphics graphics(context);
  graphics.SetSmoothingMode(Gdiplus::SmoothingModeAntiAlias);
  graphics.TranslateTransform(static_cast<REAL>(square.left), static_cast<REAL>(square.top));
  const REAL scale = static_cast<REAL>(square.right - square.left) / kField;
  graphics.ScaleTransform(scale, scale);
  Gdiplus::Pen pen(Colour(colour), kPenWidth);
  pen.SetLineJoin(Gdiplus::LineJoinRound);
  pen.SetLineCap(Gdiplus::LineCapRound, Gdiplus::LineCapRound, Gdiplus::DashCapRound);
  const Gdiplus::SolidBrush brush(Colour(colour));
  std::istringstream strokes(icon->strokes);
  for (char kind = 0; strokes >> kind;) {
    std::vector<REAL> at;
    for (REAL number = 0; strokes >> number;) {
      at.push_back(number);
    }
    strokes.clear();  // the next letter is no number
    Draw(graphics, kind, at, pen, brush);
  }
}

}  // namespace tonadex::shell
