#pragma once

#include <QBasicTimer>
#include <QElapsedTimer>
#include <QLabel>

namespace tonadex::shell {

// Covers the top of the page while a request runs: a moving bar, and below it a text that says how
// to cancel the request.
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
