#pragma once

#include <QAbstractListModel>
#include <QListView>

#include <span>
#include <vector>

#include "app/control_table.h"

namespace tonadex::shell {

// The lines of a list control.
class RowsModel : public QAbstractListModel {
  Q_OBJECT
 public:
  using QAbstractListModel::QAbstractListModel;

  enum Roles { kHintRole = Qt::UserRole };

  // True when the lines differ from those before.
  bool SetRows(const app::Control& control);
  const app::ListRows& Rows() const { return list_.rows; }

  int rowCount(const QModelIndex& parent = {}) const override;
  QVariant data(const QModelIndex& index, int role) const override;

 private:
  app::Control list_;  // as drawn
};

// Shows the lines of a list control and returns its selected row.
class RowList : public QListView {
  Q_OBJECT
 public:
  explicit RowList(QWidget* parent = nullptr);

  void SetControl(const app::Control& control);
  // Shows the entries that have an icon as buttons on each row.
  void SetButtons(std::span<const app::MenuItem> menu);
  const std::vector<const app::MenuItem*>& Buttons() const { return buttons_; }
  // The rectangle of a button in the rectangle of its row.
  QRect ButtonPlace(const QRect& row, std::size_t button) const;
  // Two rows; the layout gives the list what height remains.
  QSize sizeHint() const override;
  QSize minimumSizeHint() const override { return sizeHint(); }
  // -1 for none, also while the line of a text without row is selected.
  int SelectedRow() const;
  const app::ListRows& Rows() const { return model_->Rows(); }

 signals:
  void RowChosen();                     // the user selected a row or clicked the selected one
  void RowActivated();                  // Enter or a double click
  void MenuAsked(const QPoint& place);  // on the screen
  void ButtonClicked(const tonadex::app::MenuItem* item);  // its row is selected

 protected:
  void keyPressEvent(QKeyEvent* event) override;
  void mousePressEvent(QMouseEvent* event) override;
  void mouseReleaseEvent(QMouseEvent* event) override;
  void mouseDoubleClickEvent(QMouseEvent* event) override;
  bool viewportEvent(QEvent* event) override;
  void currentChanged(const QModelIndex& current, const QModelIndex& previous) override;
  void focusInEvent(QFocusEvent* event) override;
  void contextMenuEvent(QContextMenuEvent* event) override;
  void paintEvent(QPaintEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;

 private:
  const app::MenuItem* ButtonAt(const QPoint& place) const;

  RowsModel* model_;
  std::vector<const app::MenuItem*> buttons_;
  QString invitation_;
  bool setting_ = false;
};

}  // namespace tonadex::shell
