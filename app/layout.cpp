#include "app/layout.h"

#include <algorithm>
#include <cmath>
#include <numeric>
#include <utility>

#include "app/form1.h"

namespace tonadex::app {
namespace {

void AddControls(const Part& part, std::vector<Control Form1::*>& controls) {
  if (part.control != nullptr) {
    controls.push_back(part.control);
  }
  for (const Part& each : part.parts) {
    AddControls(each, controls);
  }
}

// Shares out one line; `total` does not include its gaps.
void ShareLine(std::span<Share> shares, int total) {
  int room = total, asked = 0;
  for (Share& share : shares) {
    share.size = share.least;
    (share.weight == 0 ? room : asked) += share.weight == 0 ? -share.least : share.least;
  }
  room = std::max(0, room);
  if (asked > room) {  // not enough space
    for (Share& share : shares) {
      share.size = share.weight == 0 ? share.least : share.least * room / asked;
    }
    return;
  }
  for (bool settled = false; !settled;) {
    int weights = 0;
    for (const Share& share : shares) {
      weights += share.weight;
    }
    settled = true;
    for (Share& share : shares) {
      if (share.weight > 0) {
        share.size = room * share.weight / weights;
        const int bounded = std::clamp(share.size, share.least, share.most);
        if (bounded != share.size) {  // at its limit: share the rest again
          share.size = bounded;
          room -= bounded;
          share.weight = 0;
          settled = false;
          break;
        }
      }
    }
  }
}

// The end of the line that begins with `first`.
std::size_t LineEnd(std::span<const Share> shares, std::size_t first, int gap, int total) {
  int used = shares[first].least;
  for (std::size_t i = first + 1; i < shares.size(); ++i) {
    used += gap + shares[i].least;
    if (used > total || (shares[i].stretch && i + 1 < shares.size())) {
      return i;
    }
  }
  return shares.size();
}

class Solver {
 public:
  Solver(const Form1& form, double scale, const Measure& measure, const Rect& view = {},
         int scrolled = 0)
      : form_(form), scale_(scale), measure_(measure), view_(view), scrolled_(scrolled) {}

  void Put(const Part& part, Rect area) {
    const Rect outside = view_;
    const int higher = part.scrolls ? Height(part, area.width) - area.height : 0;
    if (higher > 0) {
      view_ = area;
      area.top -= std::min(std::exchange(scrolled_, 0), higher);
      area.height += higher;
    }
    if (part.kind == Part::Kind::kControl || part.frame != Part::Frame::kNone) {
      placed_.push_back({&part, area, view_});
    }
    const std::vector<const Part*> parts = Shown(part);
    const Rect inner = {area.left + Px(part.marginX), area.top + Px(part.marginTop),
                        area.width - 2 * Px(part.marginX),
                        area.height - Px(part.marginTop) - Px(part.marginBottom)};
    if (part.kind == Part::Kind::kRow) {
      PutRow(part, parts, inner);
    } else if (part.kind == Part::Kind::kColumn) {
      PutColumn(part, parts, inner);
    }
    view_ = outside;
  }

  // The height that a part needs at this width.
  int Height(const Part& part, int width) const {
    int height = 0;
    if (part.control != nullptr) {
      height = measure_(part.control, width).height;
    } else {
      const auto parts = Shown(part);
      const int inner = width - 2 * Px(part.marginX);
      if (part.kind == Part::Kind::kRow) {
        const std::vector<int> lines = LineHeights(parts, Widths(part, parts, inner));
        height = std::accumulate(lines.begin(), lines.end(), 0) + Gaps(part, lines.size());
      } else {
        for (const Part* each : parts) {
          height += Height(*each, inner);
        }
        height += Gaps(part, parts.size());
      }
      height += Px(part.marginTop) + Px(part.marginBottom);
    }
    return std::clamp(height, Px(part.leastHeight), Px(part.mostHeight));
  }

  std::vector<Placed> Take() { return std::move(placed_); }

 private:
  int Px(int distance) const {
    return distance == Part::kUnbounded ? distance
                                        : static_cast<int>(std::lround(distance * scale_));
  }

  bool Shows(const Part& part) const {
    return part.kind == Part::Kind::kStretch ||
           (part.control != nullptr ? (form_.*part.control).Shows()
                                    : std::ranges::any_of(part.parts, [this](const Part& each) {
                                        return each.kind != Part::Kind::kStretch && Shows(each);
                                      }));
  }
  std::vector<const Part*> Shown(const Part& part) const {
    std::vector<const Part*> shown;
    for (const Part& each : part.parts) {
      if (Shows(each)) {
        shown.push_back(&each);
      }
    }
    return shown;
  }
  int Gaps(const Part& part, std::size_t parts) const {
    return parts == 0 ? 0 : Px(part.gap) * static_cast<int>(parts - 1);
  }

  // The width that a part needs.
  int Width(const Part& part) const {
    int width = 0;
    if (part.control != nullptr) {
      width = measure_(part.control, Part::kUnbounded).width;
    } else {
      const auto parts = Shown(part);
      for (const Part* each : parts) {
        width =
            part.kind == Part::Kind::kRow ? width + Width(*each) : std::max(width, Width(*each));
      }
      width +=
          2 * Px(part.marginX) + (part.kind == Part::Kind::kRow ? Gaps(part, parts.size()) : 0);
    }
    return std::clamp(width, Px(part.leastWidth), Px(part.mostWidth));
  }

  std::vector<Share> Widths(const Part& part, const std::vector<const Part*>& parts,
                            int total) const {
    std::vector<Share> shares;
    for (const Part* each : parts) {
      // A part with a weight may be narrower than its text, which then wraps.
      const int least = each->weight > 0 ? Px(each->leastWidth) : Width(*each);
      shares.push_back({.least = least,
                        .most = std::max(least, Px(each->mostWidth)),
                        .weight = each->weight,
                        .stretch = each->kind == Part::Kind::kStretch});
    }
    int missing = Gaps(part, parts.size()) - total;
    for (const Share& share : shares) {
      missing += share.least;
    }
    for (std::size_t i = 0; i < parts.size(); ++i) {
      if (parts[i]->shrinks && missing > 0) {
        shares[i].least = std::max(Px(look::kLeastLink), shares[i].least - missing);
      }
    }
    ShareOut(shares, Px(part.gap), total, part.wraps);
    return shares;
  }

  // The heights of a row's lines.
  std::vector<int> LineHeights(const std::vector<const Part*>& parts,
                               const std::vector<Share>& widths) const {
    std::vector<int> heights;
    for (std::size_t i = 0; i < parts.size(); ++i) {
      heights.resize(static_cast<std::size_t>(widths[i].line) + 1);
      heights.back() = std::max(heights.back(), Height(*parts[i], widths[i].size));
    }
    return heights;
  }

  void PutRow(const Part& part, const std::vector<const Part*>& parts, const Rect& area) {
    const std::vector<Share> widths = Widths(part, parts, area.width);
    std::vector<int> lines = LineHeights(parts, widths);
    if (lines.size() == 1) {
      lines[0] = area.height;
    }
    int top = area.top;
    for (std::size_t i = 0; i < parts.size(); ++i) {
      if (i > 0 && widths[i].line > widths[i - 1].line) {
        top += lines[static_cast<std::size_t>(widths[i - 1].line)] + Px(part.gap);
      }
      const int line = lines[static_cast<std::size_t>(widths[i].line)];
      Rect place = {area.left + widths[i].at, top, widths[i].size, line};
      if (parts[i]->control != nullptr && parts[i]->leastHeight == 0) {  // in the line's middle
        place.height = std::min(line, Height(*parts[i], place.width));
        place.top += (line - place.height) / 2;
      }
      place.height = std::min(place.height, Px(parts[i]->mostHeight));
      Put(*parts[i], place);
    }
  }

  void PutColumn(const Part& part, const std::vector<const Part*>& parts, const Rect& area) {
    std::vector<Share> heights;
    for (const Part* each : parts) {
      const int least = Height(*each, area.width);
      heights.push_back(
          {.least = least, .most = std::max(least, Px(each->mostHeight)), .weight = each->weight});
    }
    ShareOut(heights, Px(part.gap), area.height);
    for (std::size_t i = 0; i < parts.size(); ++i) {
      Put(*parts[i], {area.left, area.top + heights[i].at,
                      std::min(area.width, Px(parts[i]->mostWidth)), heights[i].size});
    }
  }

  const Form1& form_;
  double scale_;
  const Measure& measure_;
  Rect view_ = {};
  int scrolled_ = 0;  // what the outermost part that scrolls has yet to move
  std::vector<Placed> placed_;
};

}  // namespace

int ShareOut(std::span<Share> shares, int gap, int total, bool wraps) {
  int needed = 0;
  for (const Share& share : shares) {
    needed += share.least + gap;
  }
  const bool broken = wraps && needed - gap > total;
  bool atEnd = false;
  int line = 0;
  for (std::size_t first = 0, end = 0; first < shares.size(); first = end, ++line) {
    end = broken ? LineEnd(shares, first, gap, total) : shares.size();
    const std::span<Share> shown = shares.subspan(first, end - first);
    const int room = total - gap * static_cast<int>(shown.size() - 1);
    ShareLine(shown, room);
    atEnd |= shown[0].stretch;
    int at = 0;
    for (Share& share : shown) {
      share.line = line;
      share.at = at;
      share.size = wraps ? std::min(share.size, total) : share.size;
      at += share.size + gap;
    }
    for (Share& share : shown) {
      share.at += broken && atEnd ? std::max(0, total - (at - gap)) : 0;
    }
  }
  return line;
}

Part The(Control Form1::*control) {
  return {.kind = Part::Kind::kControl, .control = control};
}
Part Row(std::vector<Part> parts) {
  return {.kind = Part::Kind::kRow, .parts = std::move(parts)};
}
Part Column(std::vector<Part> parts) {
  return {.kind = Part::Kind::kColumn, .parts = std::move(parts)};
}
Part Card(std::vector<Part> parts) {
  Part card =
      Column(std::move(parts)).Margins(look::kCardPadding, look::kCardPadding, look::kCardPadding);
  card.frame = Part::Frame::kCard;
  return card;
}
Part Stretch() {
  return Part{.kind = Part::Kind::kStretch}.Weight(1);
}
Part Field(Control Form1::*label, Part field) {
  const int weight = field.weight;
  return Column({The(label), std::move(field)}).Gap(look::kFieldGap).Weight(weight);
}

Part Centred(Part part, int widest) {
  return Row({Stretch(), std::move(part).Weight(1000).Widths(0, widest), Stretch()}).Gap(0);
}

std::vector<Control Form1::*> ControlsIn(const Part& tree) {
  std::vector<Control Form1::*> controls;
  AddControls(tree, controls);
  return controls;
}

std::vector<Control Form1::*> PageControls(std::int16_t page) {
  return ControlsIn(PageLayout(page));
}

int HeightFor(const Form1& form, const Part& tree, int width, double scale,
              const Measure& measure) {
  return Solver(form, scale, measure).Height(tree, width);
}

std::vector<Placed> Place(const Form1& form, const Part& tree, const Rect& area, double scale,
                          const Measure& measure, int scrolled) {
  Solver solver(form, scale, measure, area, scrolled);
  solver.Put(tree, area);
  return solver.Take();
}

}  // namespace tonadex::app
