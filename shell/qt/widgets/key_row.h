#pragma once

#include <QElapsedTimer>
#include <QWidget>
#include <vector>

#include "app/composer_keys.h"

class QPushButton;

namespace tonadex::shell {

// The phone's keys as a row of buttons, each with its word below. A key counts as held when it is
// kept down, together with Shift, or while the last button is checked. If the words do not fit into
// one row, there are several.
class KeyRow : public QWidget {
  Q_OBJECT
 public:
  explicit KeyRow(QWidget* parent = nullptr);
  // The first and the last key, for the tab order.
  QWidget* First() const { return keys_.front().button; }
  QWidget* Last() const { return keys_.back().button; }

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
    QWidget *button, *words;
    QSize Least() const;
  };
  void Add(QPushButton* button, const app::ComposerKey& key);
  std::vector<QRect> Places(int width) const;

  std::vector<Key> keys_;
  QPushButton* hold_;
  QElapsedTimer down_;
};

}  // namespace tonadex::shell
