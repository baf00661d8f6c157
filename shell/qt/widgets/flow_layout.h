#pragma once

#include <QLayout>
#include <vector>

#include "app/layout.h"

namespace tonadex::shell {

// A row of the model's layout that goes on in further lines where it is too narrow.
class FlowLayout : public QLayout {
 public:
  using QLayout::QLayout;
  ~FlowLayout() override;

  void Insert(int index, QWidget* widget, int weight);
  void Add(QLayout* layout, int weight);
  void AddStretch(int weight);

  void addItem(QLayoutItem* item) override { items_.push_back({item, 0}); }
  int count() const override { return static_cast<int>(items_.size()); }
  QLayoutItem* itemAt(int index) const override;
  QLayoutItem* takeAt(int index) override;

  QSize sizeHint() const override;
  QSize minimumSize() const override;
  bool hasHeightForWidth() const override { return true; }
  int heightForWidth(int width) const override { return Height(width, false); }
  int minimumHeightForWidth(int width) const override { return Height(width, true); }
  Qt::Orientations expandingDirections() const override;
  void setGeometry(const QRect& place) override;

 private:
  struct Item {
    QLayoutItem* item;
    int weight;
  };

  // The items that show, with their places in a row this wide.
  std::vector<QLayoutItem*> Shown(int width, std::vector<app::Share>& shares) const;
  std::vector<int> LineHeights(int width, bool least) const;
  int Height(int width, bool least) const;

  std::vector<Item> items_;
};

}  // namespace tonadex::shell
