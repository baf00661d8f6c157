#include "shell/win32/icons.h"

#include <array>

#include "shell/win32/drawing.h"

namespace tonadex::shell {
namespace {

using Gdiplus::REAL;

// One stroke of an icon on a field of 24 by 24.
struct Stroke {
  enum Kind { kPath, kArea, kOval, kDisc, kBox };
  Kind kind;
  int points;               // of a path or a filled area
  std::array<REAL, 12> at;  // x, y, x, y …; oval, disc and box: left, top, width, height
};

struct Icon {
  std::string_view name;
  int strokes;
  std::array<Stroke, 7> stroke;
};

using S = Stroke;
constexpr auto kIcons = std::to_array<Icon>({
    {"inicio",
     3,
     {{{S::kPath, 3, {3.5F, 11, 12, 4, 20.5F, 11}},
       {S::kPath, 4, {6, 10, 6, 20, 18, 20, 18, 10}},
       {S::kPath, 4, {10, 20, 10, 14.5F, 14, 14.5F, 14, 20}}}}},
    {"buscar", 2, {{{S::kOval, 0, {4.5F, 4.5F, 12, 12}}, {S::kPath, 2, {15, 15, 20.5F, 20.5F}}}}},
    {"repertorio",
     4,
     {{{S::kPath, 4, {9, 17.5F, 9, 6, 19.5F, 4, 19.5F, 15.5F}},
       {S::kOval, 0, {3.8F, 15.3F, 5.2F, 4.4F}},
       {S::kOval, 0, {14.3F, 13.3F, 5.2F, 4.4F}},
       {S::kPath, 2, {9, 10, 19.5F, 8}}}}},
    {"internet",
     4,
     {{{S::kOval, 0, {3.5F, 3.5F, 17, 17}},
       {S::kOval, 0, {8.2F, 3.5F, 7.6F, 17}},
       {S::kPath, 2, {3.5F, 12, 20.5F, 12}}}}},
    {"opciones",
     7,
     {{{S::kPath, 2, {4, 6.5F, 13, 6.5F}},
       {S::kPath, 2, {18, 6.5F, 20, 6.5F}},
       {S::kPath, 2, {12, 12, 20, 12}},
       {S::kPath, 2, {4, 12, 7, 12}},
       {S::kOval, 0, {13.2F, 4.2F, 4.6F, 4.6F}},
       {S::kOval, 0, {7.2F, 9.7F, 4.6F, 4.6F}},
       {S::kPath, 2, {4, 17.5F, 20, 17.5F}}}}},
    {"ayuda",
     3,
     {{{S::kOval, 0, {3.5F, 3.5F, 17, 17}},
       {S::kPath, 6, {9.5F, 9.5F, 10.5F, 7.5F, 13.5F, 7.5F, 14.6F, 9.5F, 12.2F, 12, 12, 13.8F}},
       {S::kDisc, 0, {11, 15.8F, 2, 2}}}}},
    {"azar",
     6,
     {{{S::kBox, 0, {4, 4, 16, 16}},
       {S::kDisc, 0, {7, 7, 3, 3}},
       {S::kDisc, 0, {14, 7, 3, 3}},
       {S::kDisc, 0, {10.5F, 10.5F, 3, 3}},
       {S::kDisc, 0, {7, 14, 3, 3}},
       {S::kDisc, 0, {14, 14, 3, 3}}}}},
    {"bajar",
     3,
     {{{S::kPath, 2, {12, 4, 12, 15}},
       {S::kPath, 3, {7.5F, 10.8F, 12, 15.3F, 16.5F, 10.8F}},
       {S::kPath, 2, {4.5F, 19.5F, 19.5F, 19.5F}}}}},
    {"subir",
     3,
     {{{S::kPath, 2, {12, 15.5F, 12, 4.5F}},
       {S::kPath, 3, {7.5F, 8.7F, 12, 4.2F, 16.5F, 8.7F}},
       {S::kPath, 2, {4.5F, 19.5F, 19.5F, 19.5F}}}}},
    {"reproducir", 1, {{{S::kArea, 3, {7.5F, 4.8F, 19, 12, 7.5F, 19.2F}}}}},
    {"convertir",
     4,
     {{{S::kPath, 2, {4, 8, 18.5F, 8}},
       {S::kPath, 3, {15, 4.5F, 18.8F, 8, 15, 11.5F}},
       {S::kPath, 2, {20, 16, 5.5F, 16}},
       {S::kPath, 3, {9, 12.5F, 5.2F, 16, 9, 19.5F}}}}},
    {"imprimir",
     3,
     {{{S::kPath, 4, {7, 9, 7, 4, 17, 4, 17, 9}},
       {S::kPath, 6, {7, 17, 3.5F, 17, 3.5F, 9, 20.5F, 9, 20.5F, 17, 17, 17}},
       {S::kPath, 5, {7, 14, 17, 14, 17, 20, 7, 20, 7, 14}}}}},
    {"copiar",
     2,
     {{{S::kBox, 0, {9, 9, 11, 11.5F}},
       {S::kPath, 6, {15, 9, 15, 3.5F, 4, 3.5F, 4, 15, 6, 15, 9, 15}}}}},
    {"guardar",
     3,
     {{{S::kPath, 6, {4, 4, 16, 4, 20, 8, 20, 20, 4, 20, 4, 4}},
       {S::kPath, 4, {8, 4, 8, 8.5F, 14.5F, 8.5F, 14.5F, 4}},
       {S::kPath, 4, {7.5F, 20, 7.5F, 13.5F, 16.5F, 13.5F, 16.5F, 20}}}}},
    {"movil",
     6,
     {{{S::kBox, 0, {6.5F, 2.8F, 11, 18.4F}},
       {S::kPath, 5, {9, 6, 15, 6, 15, 11, 9, 11, 9, 6}},
       {S::kPath, 2, {9, 14.3F, 15, 14.3F}},
       {S::kPath, 2, {9, 17.3F, 15, 17.3F}}}}},
});

void Draw(Gdiplus::Graphics& graphics, const Stroke& stroke, const Gdiplus::Pen& pen,
          const Gdiplus::Brush& brush) {
  std::array<Gdiplus::PointF, 6> points;
  for (std::size_t i = 0; i < points.size(); ++i) {
    points[i] = {stroke.at[2 * i], stroke.at[2 * i + 1]};
  }
  const auto& at = stroke.at;
  switch (stroke.kind) {
    case Stroke::kPath:
      graphics.DrawLines(&pen, points.data(), stroke.points);
      break;
    case Stroke::kArea:
      graphics.FillPolygon(&brush, points.data(), stroke.points);
      break;
    case Stroke::kOval:
      graphics.DrawEllipse(&pen, at[0], at[1], at[2], at[3]);
      break;
    case Stroke::kDisc:
      graphics.FillEllipse(&brush, at[0], at[1], at[2], at[3]);
      break;
    case Stroke::kBox:
      graphics.DrawRectangle(&pen, at[0], at[1], at[2], at[3]);
      break;
  }
}

}  // namespace

void DrawIcon(HDC context, std::string_view name, const RECT& square, COLORREF colour) {
  constexpr REAL kField = 24, kPenWidth = 1.75F;
  const auto* icon = std::find_if(kIcons.begin(), kIcons.end(),
                                  [name](const Icon& row) { return row.name == name; });
  if (icon == kIcons.end()) {
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
  for (int i = 0; i < icon->strokes; ++i) {
    Draw(graphics, icon->stroke[static_cast<std::size_t>(i)], pen, brush);
  }
}

}  // namespace tonadex::shell
