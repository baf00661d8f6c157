#pragma once

#include <string>
#include <utility>
#include <vector>

#include "app/melody_layout.h"

// Pictures as lists of shapes, which shells and printers paint in order. Coordinates and font sizes
// are in device-independent pixels (on paper in points), from the upper left corner. Texts are
// Windows-1252.
namespace tonadex::app {

// A colour role of the window's theme. On paper it is black or grey.
enum class Ink {
  kText,
  kMuted,
  kFaint,
  kBorder,
  kCard,
  kWindow,
  kAccent,
  kAccentText,
  kAccentWash,
  kDisplayGround,
  kDisplayInk,
};

struct Shape {
  enum class Kind {
    kFilled,  // a box
    kFrame,   // its outline, `size` wide
    kText,    // one line, vertically centred; shrunk to the width of the box
  };
  enum class Align { kLeft, kCentre, kRight };

  Kind kind = Kind::kText;
  Box box = {};
  Ink ink = Ink::kText;
  double size = 1;    // kText: font size
  double radius = 0;  // of rounded corners
  std::string text = {};
  bool bold = false;
  bool mono = false;  // in a monospaced font
  Align align = Align::kLeft;
  int hit = -1;  // what a click on it reports to the page; -1: what lies below it decides

  friend bool operator==(const Shape&, const Shape&) = default;
};

using Picture = std::vector<Shape>;

// Builders of shapes.
inline Shape Filled(const Box& box, Ink ink, double radius = 0, int hit = -1) {
  return {.kind = Shape::Kind::kFilled, .box = box, .ink = ink, .radius = radius, .hit = hit};
}
inline Shape Frame(const Box& box, Ink ink, double width, double radius) {
  return {.kind = Shape::Kind::kFrame, .box = box, .ink = ink, .size = width, .radius = radius};
}
inline Shape Text(std::string words, const Box& box, double size, Ink ink,
                  Shape::Align align = Shape::Align::kCentre, bool bold = false) {
  return {
      .box = box, .ink = ink, .size = size, .text = std::move(words), .bold = bold, .align = align};
}

// The `hit` of the uppermost shape with one at a point, -1 for none.
inline int HitAt(const Picture& picture, double x, double y) {
  int hit = -1;
  for (const Shape& shape : picture) {
    const bool inside =
        x >= shape.box.x && x < shape.box.right() && y >= shape.box.y && y < shape.box.bottom();
    hit = inside && shape.hit >= 0 ? shape.hit : hit;
  }
  return hit;
}

// Pages to print. Sizes are in points.
struct Paper {
  std::string title;
  double width = 0, height = 0;
  std::vector<Picture> pages;
};

}  // namespace tonadex::app
