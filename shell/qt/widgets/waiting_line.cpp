#include "shell/qt/widgets/waiting_line.h"

#include <QEvent>
#include <QPainter>

#include "shell/qt/theme/theme.h"

namespace tonadex::shell {
namespace {

constexpr int kStepMs = 40;
constexpr qint64 kRoundMs = 1400;
constexpr int kThickness = 3;

}  // namespace

WaitingLine::WaitingLine(const QString& words) : QLabel(words) {
  setProperty("bar", true);
  setAlignment(Qt::AlignCenter);
  setContentsMargins(kGrid, kGrid + kThickness, kGrid, kGrid);
}

void WaitingLine::PutUnder(QWidget* above) {
  above_ = above;
  parentWidget()->installEventFilter(this);
}

void WaitingLine::SetBusy(bool busy) {
  Place();
  since_.start();
  busy ? step_.start(kStepMs, this) : step_.stop();
  setVisible(busy);
  raise();
}

void WaitingLine::Place() {
  if (above_ != nullptr) {
    setGeometry(0, above_->geometry().bottom() + 1, parentWidget()->width(), sizeHint().height());
  }
}

bool WaitingLine::eventFilter(QObject* watched, QEvent* event) {
  if (event->type() == QEvent::Resize && isVisible()) {
    Place();
  }
  return QLabel::eventFilter(watched, event);
}

void WaitingLine::timerEvent(QTimerEvent*) {
  update();
}

void WaitingLine::paintEvent(QPaintEvent* event) {
  QLabel::paintEvent(event);
  const Theme theme = CurrentTheme();
  QPainter painter(this);
  painter.fillRect(0, 0, width(), kThickness, theme.border);
  const double part = static_cast<double>(since_.elapsed() % kRoundMs) / kRoundMs;
  const double length = width() / 4.0;
  painter.fillRect(QRectF(part * (width() + length) - length, 0, length, kThickness), theme.accent);
}

}  // namespace tonadex::shell
