#pragma once

#include <string>
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

  friend bool operator==(const Shape&, const Shape&) = default;
};

using Picture = std::vector<Shape>;

// Pages to print. Sizes are in points.
struct Paper {
  std::string title;
  double width = 0, height = 0;
  std::vector<Picture> pages;
};

}  // namespace tonadex::app
