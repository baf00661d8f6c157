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
  explicit WaitingLine(const QString& words);
  // Right under `above`; both are children of the same window.
  void PutUnder(QWidget* above);
  void SetBusy(bool busy);
  QString Words() const;

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  void Place();

  QWidget* above_ = nullptr;
  QLabel* words_;
  BusyLine* line_;
};

}  // namespace tonadex::shell
