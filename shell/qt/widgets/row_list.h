#pragma once

#include <QAbstractListModel>
#include <QListView>
#include <functional>

#include "app/controls.h"

namespace tonadex::shell {

// The rows of a list control, any number of them.
class RowsModel : public QAbstractListModel {
  Q_OBJECT
 public:
  using QAbstractListModel::QAbstractListModel;

  enum Roles { kHintRole = Qt::UserRole };

  // True when the rows are other ones than before. `loose` is shown as one more row at the end,
  // unless it is empty.
  bool SetRows(const app::ListRows& rows, const std::string& loose);
  const app::ListRows& Rows() const { return rows_; }

  int rowCount(const QModelIndex& parent = {}) const override;
  QVariant data(const QModelIndex& index, int role) const override;

 private:
  app::ListRows rows_;
  std::string loose_;
};

// A list of one column that draws and gives back a list control: rows, selected row and, where the
// control has one, a text that need not be a row's.
class RowList : public QListView {
  Q_OBJECT
 public:
  explicit RowList(QWidget* parent = nullptr);

  void SetControl(const app::Control& control);
  // The control's row, -1 also while a text that is no row's is marked.
  int SelectedRow() const;
  const app::ListRows& Rows() const { return model_->Rows(); }
  // The selected row's text or, with none selected, the text that was set.
  const std::string& Text() const { return text_; }
  // What stands in the list while it has no row.
  void SetInvitation(const QString& sentence);

 signals:
  void RowChosen();     // the user selected a row, by a click also the one that was selected
  void RowActivated();  // Enter or a double click

 protected:
  void keyPressEvent(QKeyEvent* event) override;
  void mousePressEvent(QMouseEvent* event) override;
  void mouseDoubleClickEvent(QMouseEvent* event) override;
  void currentChanged(const QModelIndex& current, const QModelIndex& previous) override;
  void focusInEvent(QFocusEvent* event) override;
  void paintEvent(QPaintEvent* event) override;

 private:
  RowsModel* model_;
  std::string text_;
  QString invitation_;
  bool setting_ = false;
};

}  // namespace tonadex::shell
