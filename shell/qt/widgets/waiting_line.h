#pragma once

#include <QFrame>

class QLabel;

namespace tonadex::shell {

class BusyLine;

// Says over the top of a window's pages, on whichever of them, that the program waits and how to
// end that. Hidden while nothing is awaited.
class WaitingLine : public QFrame {
  Q_OBJECT
 public:
  // A child of `window`, right under `above`, which is a child of it, too.
  WaitingLine(const QString& words, QWidget* window, QWidget* above);
  void SetBusy(bool busy);
  QString Words() const;

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  void Place();

  QWidget* above_;
  QLabel* words_;
  BusyLine* line_;
};

}  // namespace tonadex::shell
