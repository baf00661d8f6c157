#pragma once

#include <cstdint>
#include <functional>
#include <limits>
#include <vector>

#include "app/control_table.h"
#include "app/look.h"

// Where the controls stand: a tree of rows and columns for each page, as data. A toolkit with boxes
// of its own builds them from the tree; for one without, Place gives every rectangle. Distances are
// device-independent pixels.
namespace tonadex::app {

struct Part {
  enum class Kind { kControl, kRow, kColumn, kStretch, kPage };  // kPage: the page's place
  enum class Frame { kNone, kBar, kCard };
  static constexpr int kUnbounded = std::numeric_limits<std::int16_t>::max();

  Kind kind;
  Control Form1::*control = nullptr;
  std::vector<Part> parts = {};
  int gap = look::kGrid;
  int marginX = 0, marginTop = 0, marginBottom = 0;
  int weight = 0;  // share of what the parts without weight leave over
  int leastWidth = 0, mostWidth = kUnbounded, leastHeight = 0, mostHeight = kUnbounded;
  Frame frame = Frame::kNone;
  bool scrolls = false;  // where the toolkit can, when it needs more height than there is

  Part Weight(int share) && { return weight = share, std::move(*this); }
  Part Gap(int distance) && { return gap = distance, std::move(*this); }
  Part Margins(int x, int top, int bottom) && {
    marginX = x, marginTop = top, marginBottom = bottom;
    return std::move(*this);
  }
  Part Widths(int least, int most) && {
    return leastWidth = least, mostWidth = most, std::move(*this);
  }
  Part Heights(int least, int most = kUnbounded) && {
    return leastHeight = least, mostHeight = most, std::move(*this);
  }
  Part Scrolls() && { return scrolls = true, std::move(*this); }
};

// What pages are written with.
Part The(Control Form1::*control);
Part Row(std::vector<Part> parts);
Part Column(std::vector<Part> parts);
Part Card(std::vector<Part> parts);  // a column on a card
Part Stretch();
Part Field(Control Form1::*label, Part field);  // a label above its field

struct Page {
  std::int16_t number;
  Part (*layout)();
};
// Pages 2 and 5 have the same layout.
std::span<const Page> Pages();
// An empty column for a number that is no page.
Part PageLayout(std::int16_t page);
// The whole window: what stands on every page, and around it the page.
Part WindowLayout(Part page);

// The controls of a tree in reading order, which is the order of the Tab key; the first that takes
// the focus has it when the page is entered.
std::vector<Control Form1::*> ControlsIn(const Part& tree);
// The controls of a page.
std::vector<Control Form1::*> PageControls(std::int16_t page);

struct Size {
  int width = 0, height = 0;
};
struct Rect {
  int left = 0, top = 0, width = 0, height = 0;

  friend bool operator==(const Rect&, const Rect&) = default;
};

// What a toolkit says of a control, in its own pixels: the size that it asks for when it may be
// `width` wide. kUnbounded: as wide as it likes.
using Measure = std::function<Size(Control Form1::*, int width)>;

// The place of a control (`part.control`), or of a bar or a card, which lies behind what follows.
struct Placed {
  const Part* part;  // in the tree
  Rect rect;
};

// Gives every visible control of the tree its place in the area, in pixels; `scale` of them are a
// device-independent one. What is hidden takes no place.
std::vector<Placed> Place(const Form1& form, const Part& tree, const Rect& area, double scale,
                          const Measure& measure);

}  // namespace tonadex::app
