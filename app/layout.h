#pragma once

#include <cstdint>
#include <functional>
#include <limits>
#include <span>
#include <vector>

#include "app/control_table.h"
#include "app/look.h"

// The layout of each page: a tree of rows and columns, as data. A toolkit that has box layouts
// builds them from the tree; for one that has none, Place computes every rectangle. Distances are
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
  int weight = 0;  // share of the space that the parts without weight leave
  int leastWidth = 0, mostWidth = kUnbounded, leastHeight = 0, mostHeight = kUnbounded;
  Frame frame = Frame::kNone;
  bool scrolls = false;  // if its contents are too high; Place scrolls only the outermost such part
  bool wraps = false;    // a row that continues on further lines when it is too narrow
  bool shrinks = false;  // a control that is shortened when its row is too narrow

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
  Part Shrinks() && { return shrinks = true, std::move(*this); }
  Part Wraps() && { return wraps = true, std::move(*this); }
  Part Scrolls() && { return scrolls = true, std::move(*this); }
};

// Builders for the layouts of the pages.
Part The(Control Form1::*control);
Part Row(std::vector<Part> parts);
Part Column(std::vector<Part> parts);
Part Card(std::vector<Part> parts);  // a column on a card
Part Stretch();
Part Field(Control Form1::*label, Part field);  // a label above its field
Part Centred(Part part, int widest);            // centred in a wider area

struct Page {
  std::int16_t number;
  Part (*layout)(bool wide);  // of the same controls, whether `wide` or not
  bool hasWide = false;       // the layout differs from look::kWideWidth on
  bool banner = false;        // the server's banner is shown above the page

  bool IsWide(int width) const { return hasWide && width >= look::kWideWidth; }
};
// Pages 2 and 5 have the same layout.
std::span<const Page> Pages();
// The layout in a window of this width, device-independent pixels. An empty column for a number
// that is no page.
Part PageLayout(std::int16_t page, int width = 0);
// The whole window: the parts common to all pages, and the page.
Part WindowLayout(Part page);

// The controls of a tree in reading order, which is the tab order; the first one that accepts the
// focus gets it when the page is shown.
std::vector<Control Form1::*> ControlsIn(const Part& tree);
std::vector<Control Form1::*> PageControls(std::int16_t page);

// The extent of a part along its row or column: limits and weight are given, the rest is computed.
struct Share {
  int least = 0, most = 0, weight = 0;
  bool stretch = false;
  int size = 0, at = 0;  // its beginning
  int line = 0;          // of a row that wraps
};
// Parts without weight get their least size; the others share the rest by weight, each within its
// limits. A row that `wraps` and is too narrow begins a new line at each stretch and wherever the
// next part does not fit; from a line that begins with a stretch on, lines are right-aligned.
// Returns the number of lines.
int ShareOut(std::span<Share> shares, int gap, int total, bool wraps = false);

struct Size {
  int width = 0, height = 0;
};
struct Rect {
  int left = 0, top = 0, width = 0, height = 0;

  friend bool operator==(const Rect&, const Rect&) = default;
};

// The size that a control needs at a maximum width, in the toolkit's pixels. kUnbounded: any width.
using Measure = std::function<Size(Control Form1::*, int width)>;

// The rectangle of a control (`part.control`), or of a bar or card, which lies behind its contents.
struct Placed {
  const Part* part;  // in the tree
  Rect rect;
  Rect view;  // what lies outside is scrolled out of sight
};

// The height that the tree needs at this width, in pixels.
int HeightFor(const Form1& form, const Part& tree, int width, double scale, const Measure& measure);

// Places every visible control of the tree in the area, in pixels; `scale` is the number of pixels
// per device-independent pixel. Hidden controls take no space. The part that scrolls is
// moved up by `scrolled` pixels if it is higher than its area.
std::vector<Placed> Place(const Form1& form, const Part& tree, const Rect& area, double scale,
                          const Measure& measure, int scrolled = 0);

}  // namespace tonadex::app
