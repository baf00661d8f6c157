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

std::vector<QLayoutItem*> FlowLayout::Shown(int width, std::vector<app::Share>& shares) const {
  std::vector<QLayoutItem*> shown;
  for (int i = 0; i < count(); ++i) {
    QLayoutItem* item = itemAt(i);
    const bool isStretch = item->spacerItem() != nullptr;
    if (isStretch || !item->isEmpty()) {
      const int least = item->minimumSize().width();
      const int wanted = stretch(i) > 0 ? least : std::max(least, item->sizeHint().width());
      shown.push_back(item);
      shares.push_back({.least = wanted,
                        .most = std::max(wanted, item->maximumSize().width()),
                        .weight = stretch(i),
                        .stretch = isStretch});
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
  for (int i = 0; i < count(); ++i) {
    width += itemAt(i)->isEmpty() ? 0 : itemAt(i)->sizeHint().width() + spacing();
  }
  const QMargins margins = contentsMargins();
  width += margins.left() + margins.right();
  return {width, Height(width, false)};
}

QSize FlowLayout::minimumSize() const {
  QSize least;
  for (int i = 0; i < count(); ++i) {
    least = itemAt(i)->isEmpty() ? least : least.expandedTo(itemAt(i)->minimumSize());
  }
  const QMargins margins = contentsMargins();
  return least + QSize(margins.left() + margins.right(), margins.top() + margins.bottom());
}

Qt::Orientations FlowLayout::expandingDirections() const {
  Qt::Orientations directions = Qt::Horizontal;
  for (int i = 0; i < count(); ++i) {
    directions |= itemAt(i)->isEmpty() ? Qt::Orientations() : itemAt(i)->expandingDirections();
  }
  return directions;
}

void FlowLayout::setGeometry(const QRect& place) {
  QLayout::setGeometry(place);  // NOLINT(bugprone-parent-virtual-call): a box would place one line
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
