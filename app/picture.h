#pragma once

#include <string>
#include <vector>

#include "app/melody_layout.h"

// Pictures as data: shells and printers only paint them, in this order. Distances and sizes of type
// are device-independent pixels, on paper points, from the picture's upper left corner. Texts are
// Windows-1252.
namespace tonadex::app {

// A colour of the window's theme; on paper black, and the faint ones grey.
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
    kText,    // one line in the middle of the box's height, smaller where it is wider than the box
  };
  enum class Align { kLeft, kCentre, kRight };

  Kind kind = Kind::kText;
  Box box = {};
  Ink ink = Ink::kText;
  double size = 1;    // of a text: of its type
  double radius = 0;  // of a box's corners
  std::string text = {};
  bool bold = false;
  bool mono = false;  // in type of one width
  Align align = Align::kLeft;
  int hit = -1;  // what a click on it means to the page; -1: the same as beside it

  friend bool operator==(const Shape&, const Shape&) = default;
};

using Picture = std::vector<Shape>;

// The `hit` of what lies uppermost at a place, -1 for none.
inline int HitAt(const Picture& picture, double x, double y) {
  int hit = -1;
  for (const Shape& shape : picture) {
    const bool inside =
        x >= shape.box.x && x < shape.box.right() && y >= shape.box.y && y < shape.box.bottom();
    hit = inside && shape.hit >= 0 ? shape.hit : hit;
  }
  return hit;
}

// Pages to print, of one size in points.
struct Paper {
  std::string title;
  double width = 0, height = 0;
  std::vector<Picture> pages;
};

}  // namespace tonadex::app
