#pragma once

#include <QElapsedTimer>
#include <QWidget>
#include <vector>

class QLabel;
class QPushButton;

namespace tonadex::shell {

// The phone's keys as a row of buttons with the word of each under its sign. A key is held by
// keeping the button down, with Shift, or while the last button is switched on. A row too narrow
// for its words becomes several.
class KeyRow : public QWidget {
  Q_OBJECT
 public:
  explicit KeyRow(QWidget* parent = nullptr);
  // The last widget of the row, for the tab order, and the first.
  QWidget* First() const { return first_; }
  QWidget* Last() const;

  bool hasHeightForWidth() const override { return true; }
  int heightForWidth(int width) const override;
  QSize sizeHint() const override;
  QSize minimumSizeHint() const override { return sizeHint(); }

 signals:
  void KeyPressed(const QString& key, bool held);

 protected:
  void resizeEvent(QResizeEvent* event) override;

 private:
  struct Key {
    QPushButton* button;
    QLabel* words;
    QSize Least() const;
  };
  void Add(QPushButton* button, const QString& words);
  std::vector<QRect> Places(int width) const;

  std::vector<Key> keys_;

  QWidget* first_ = nullptr;
  QPushButton* hold_;
  QElapsedTimer down_;
};

}  // namespace tonadex::shell
