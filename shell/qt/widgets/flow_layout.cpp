#include "shell/qt/widgets/flow_layout.h"

#include <QWidget>
#include <algorithm>
#include <numeric>

namespace tonadex::shell {
namespace {

int HeightOf(const QLayoutItem& item, int width, bool least) {
  if (item.hasHeightForWidth()) {
    return least ? item.minimumHeightForWidth(width) : item.heightForWidth(width);
  }
  return least ? item.minimumSize().height() : item.sizeHint().height();
}

}  // namespace

FlowLayout::~FlowLayout() {
  for (const Item& each : items_) {
    delete each.item;
  }
}

void FlowLayout::Insert(int index, QWidget* widget, int weight) {
  addChildWidget(widget);
  const auto at = std::min(static_cast<std::ptrdiff_t>(index), std::ssize(items_));
  items_.insert(items_.begin() + at, {new QWidgetItem(widget), weight});
  invalidate();
}

void FlowLayout::Add(QLayout* layout, int weight) {
  addChildLayout(layout);
  items_.push_back({layout, weight});
}

void FlowLayout::AddStretch(int weight) {
  items_.push_back({new QSpacerItem(0, 0, QSizePolicy::Expanding, QSizePolicy::Minimum), weight});
}

QLayoutItem* FlowLayout::itemAt(int index) const {
  return index >= 0 && index < count() ? items_[static_cast<std::size_t>(index)].item : nullptr;
}

QLayoutItem* FlowLayout::takeAt(int index) {
  QLayoutItem* item = itemAt(index);
  if (item != nullptr) {
    items_.erase(items_.begin() + index);
  }
  return item;
}

std::vector<QLayoutItem*> FlowLayout::Shown(int width, std::vector<app::Share>& shares) const {
  std::vector<QLayoutItem*> shown;
  for (const auto& [item, weight] : items_) {
    const bool stretch = item->spacerItem() != nullptr;
    if (stretch || !item->isEmpty()) {
      const int least = item->minimumSize().width();
      const int wanted = weight > 0 ? least : std::max(least, item->sizeHint().width());
      shown.push_back(item);
      shares.push_back({.least = wanted,
                        .most = std::max(wanted, item->maximumSize().width()),
                        .weight = weight,
                        .stretch = stretch});
    }
  }
  app::ShareOut(shares, spacing(), width, true);
  return shown;
}

std::vector<int> FlowLayout::LineHeights(int width, bool least) const {
  std::vector<app::Share> shares;
  const std::vector<QLayoutItem*> shown = Shown(width, shares);
  std::vector<int> heights;
  for (std::size_t i = 0; i < shown.size(); ++i) {
    heights.resize(static_cast<std::size_t>(shares[i].line) + 1);
    heights.back() = std::max(heights.back(), HeightOf(*shown[i], shares[i].size, least));
  }
  return heights;
}

int FlowLayout::Height(int width, bool least) const {
  const QMargins margins = contentsMargins();
  const std::vector<int> lines = LineHeights(width - margins.left() - margins.right(), least);
  return std::accumulate(lines.begin(), lines.end(), 0) + margins.top() + margins.bottom() +
         spacing() * std::max(0, static_cast<int>(lines.size()) - 1);
}

QSize FlowLayout::sizeHint() const {
  int width = -spacing();
  for (const Item& each : items_) {
    width += each.item->isEmpty() ? 0 : each.item->sizeHint().width() + spacing();
  }
  const QMargins margins = contentsMargins();
  width += margins.left() + margins.right();
  return {width, Height(width, false)};
}

QSize FlowLayout::minimumSize() const {
  QSize least;
  for (const Item& each : items_) {
    least = each.item->isEmpty() ? least : least.expandedTo(each.item->minimumSize());
  }
  const QMargins margins = contentsMargins();
  return least + QSize(margins.left() + margins.right(), margins.top() + margins.bottom());
}

Qt::Orientations FlowLayout::expandingDirections() const {
  const bool high = std::ranges::any_of(items_, [](const Item& each) {
    return !each.item->isEmpty() && each.item->expandingDirections().testFlag(Qt::Vertical);
  });
  return high ? Qt::Horizontal | Qt::Vertical : Qt::Orientations(Qt::Horizontal);
}

void FlowLayout::setGeometry(const QRect& place) {
  QLayout::setGeometry(place);
  const QRect inner = contentsRect();
  std::vector<app::Share> shares;
  const std::vector<QLayoutItem*> shown = Shown(inner.width(), shares);
  std::vector<int> lines = LineHeights(inner.width(), false);
  const int spare = inner.height() - std::accumulate(lines.begin(), lines.end(), 0) -
                    spacing() * std::max(0, static_cast<int>(lines.size()) - 1);
  int top = inner.top();
  for (std::size_t i = 0; i < shown.size(); ++i) {
    const auto line = static_cast<std::size_t>(shares[i].line);
    if (i > 0 && shares[i].line > shares[i - 1].line) {
      top += lines[line - 1] + spacing();
    }
    if (i == 0 || shares[i].line > shares[i - 1].line) {
      lines[line] += spare / static_cast<int>(lines.size());
    }
    shown[i]->setGeometry({inner.left() + shares[i].at, top, shares[i].size, lines[line]});
  }
}

}  // namespace tonadex::shell
