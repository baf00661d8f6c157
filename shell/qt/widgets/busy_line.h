#pragma once

#include <QBasicTimer>
#include <QElapsedTimer>
#include <QWidget>

namespace tonadex::shell {

// A slim line with a part that moves while something is awaited. It keeps its place in the layout
// when it is idle.
class BusyLine : public QWidget {
  Q_OBJECT
 public:
  explicit BusyLine(QWidget* parent = nullptr);
  void SetBusy(bool busy);
  QSize sizeHint() const override { return {120, 3}; }

 protected:
  void paintEvent(QPaintEvent* event) override;
  void timerEvent(QTimerEvent* event) override;

 private:
  bool busy_ = false;
  QBasicTimer step_;
  QElapsedTimer since_;
};

}  // namespace tonadex::shell
