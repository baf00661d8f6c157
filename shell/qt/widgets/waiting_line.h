#pragma once

#include <QBasicTimer>
#include <QElapsedTimer>
#include <QLabel>

namespace tonadex::shell {

// Says over the top of every page that the program waits and how to end that, under a slim line in
// which a part moves. Hidden while nothing is awaited.
class WaitingLine : public QLabel {
  Q_OBJECT
 public:
  explicit WaitingLine(const QString& words);
  // Directly below `above`; both are children of the same window.
  void PutUnder(QWidget* above);
  void SetBusy(bool busy);

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override;
  void paintEvent(QPaintEvent* event) override;
  void timerEvent(QTimerEvent* event) override;

 private:
  void Place();

  QWidget* above_ = nullptr;
  QBasicTimer step_;
  QElapsedTimer since_;
};

}  // namespace tonadex::shell
