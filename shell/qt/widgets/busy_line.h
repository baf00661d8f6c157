#pragma once

#include <QElapsedTimer>
#include <QWidget>

namespace tonadex::shell {

// A slim line with a part that moves while something is awaited. It keeps its place in the layout
// when it is idle. It has no timer: it moves with each repaint.
class BusyLine : public QWidget {
  Q_OBJECT
 public:
  explicit BusyLine(QWidget* parent = nullptr);
  void SetBusy(bool busy);
  QSize sizeHint() const override { return {120, 3}; }

 protected:
  void paintEvent(QPaintEvent* event) override;

 private:
  bool busy_ = false;
  QElapsedTimer since_;
};

}  // namespace tonadex::shell
