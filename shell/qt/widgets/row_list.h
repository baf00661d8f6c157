#pragma once

#include <QAbstractListModel>
#include <QListView>

#include <span>
#include <vector>

#include "app/control_table.h"

namespace tonadex::shell {

// The rows of a list control, any number of them.
class RowsModel : public QAbstractListModel {
  Q_OBJECT
 public:
  using QAbstractListModel::QAbstractListModel;

  enum Roles { kHintRole = Qt::UserRole };

  // True when the rows differ from those before. A loose text becomes one more row at the end.
  bool SetRows(const app::Control& control);
  const app::ListRows& Rows() const { return list_.rows; }

  int rowCount(const QModelIndex& parent = {}) const override;
  QVariant data(const QModelIndex& index, int role) const override;

 private:
  app::Control list_;  // its rows alone
  std::string loose_;
};

// A list of one column that draws a list control and gives back its selected row. A text of the
// control that is in no row is shown as one more row.
class RowList : public QListView {
  Q_OBJECT
 public:
  explicit RowList(QWidget* parent = nullptr);

  void SetControl(const app::Control& control);
  // Those entries that have an icon become buttons at the end of each row.
  void SetButtons(std::span<const app::MenuItem> menu);
  const std::vector<const app::MenuItem*>& Buttons() const { return buttons_; }
  // The place of a button in its row's.
  QRect ButtonPlace(const QRect& row, std::size_t button) const;
  // A list takes the height that is left and asks for two rows.
  QSize sizeHint() const override;
  QSize minimumSizeHint() const override { return sizeHint(); }
  // -1 also while the loose text is marked.
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
