#pragma once

#include <QBoxLayout>
#include <vector>

#include "app/layout.h"

namespace tonadex::shell {

// A row of the model's layout that continues on further lines when it is too narrow.
class FlowLayout : public QBoxLayout {
 public:
  FlowLayout() : QBoxLayout(LeftToRight) {}

  QSize sizeHint() const override;
  QSize minimumSize() const override;
  // NOLINTNEXTLINE(bugprone-parent-virtual-call): a box would add the widths of one line
  QSize maximumSize() const override { return QLayout::maximumSize(); }
  bool hasHeightForWidth() const override { return true; }
  int heightForWidth(int width) const override { return Height(width, false); }
  int minimumHeightForWidth(int width) const override { return Height(width, true); }
  Qt::Orientations expandingDirections() const override;
  void setGeometry(const QRect& place) override;

 private:
  // The items that show, with their places in a row this wide.
  std::vector<QLayoutItem*> Shown(int width, std::vector<app::Share>& shares) const;
  std::vector<int> LineHeights(int width, bool least) const;
  int Height(int width, bool least) const;
};

}  // namespace tonadex::shell
