#pragma once

#include <QAbstractListModel>
#include <QListView>

#include "app/controls.h"

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
  // -1 also while the loose text is marked.
  int SelectedRow() const;
  const app::ListRows& Rows() const { return model_->Rows(); }

 signals:
  void RowChosen();                     // the user selected a row or clicked the selected one
  void RowActivated();                  // Enter or a double click
  void MenuAsked(const QPoint& place);  // on the screen

 protected:
  void keyPressEvent(QKeyEvent* event) override;
  void mousePressEvent(QMouseEvent* event) override;
  void mouseDoubleClickEvent(QMouseEvent* event) override;
  void currentChanged(const QModelIndex& current, const QModelIndex& previous) override;
  void focusInEvent(QFocusEvent* event) override;
  void contextMenuEvent(QContextMenuEvent* event) override;
  void paintEvent(QPaintEvent* event) override;

 private:
  RowsModel* model_;
  QString invitation_;
  bool setting_ = false;
};

}  // namespace tonadex::shell
