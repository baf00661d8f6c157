#pragma once

#include <QElapsedTimer>
#include <QWidget>

class QGridLayout;
class QPushButton;

namespace tonadex::shell {

// The phone's keys as a row of buttons with the word of each under its sign. A key is held by
// keeping the button down, with Shift, or while the last button is switched on.
class KeyRow : public QWidget {
  Q_OBJECT
 public:
  explicit KeyRow(QWidget* parent = nullptr);
  // The last widget of the row, for the tab order, and the first.
  QWidget* First() const { return first_; }
  QWidget* Last() const;

 signals:
  void KeyPressed(const QString& key, bool held);

 private:
  void AddColumn(QGridLayout* grid, QPushButton* button, const QString& words);

  QWidget* first_ = nullptr;
  QPushButton* hold_;
  QElapsedTimer down_;
};

}  // namespace tonadex::shell
