#include "shell/qt/widgets/busy_line.h"

#include <QPainter>

#include "shell/qt/theme/theme.h"

namespace tonadex::shell {
namespace {

constexpr int kStepMs = 40;

}  // namespace

BusyLine::BusyLine(QWidget* parent) : QWidget(parent) {
  setFixedHeight(sizeHint().height());
}

void BusyLine::SetBusy(bool busy) {
  busy_ = busy;
  since_.start();
  busy ? step_.start(kStepMs, this) : step_.stop();
  update();
}

void BusyLine::timerEvent(QTimerEvent*) {
  update();
}

void BusyLine::paintEvent(QPaintEvent*) {
  if (!busy_) {
    return;
  }
  constexpr qint64 kRoundMs = 1400;
  const Theme theme = CurrentTheme();
  QPainter painter(this);
  painter.fillRect(rect(), theme.border);
  const double part = static_cast<double>(since_.elapsed() % kRoundMs) / kRoundMs;
  const double length = width() / 4.0;
  painter.fillRect(QRectF(part * (width() + length) - length, 0, length, height()), theme.accent);
}

}  // namespace tonadex::shell
