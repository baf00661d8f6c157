#include "shell/qt/widgets/waiting_line.h"

#include <QEvent>
#include <QLabel>
#include <QVBoxLayout>

#include "shell/qt/theme/theme.h"
#include "shell/qt/widgets/busy_line.h"

namespace tonadex::shell {

WaitingLine::WaitingLine(const QString& words) : words_(new QLabel(words)), line_(new BusyLine) {
  setProperty("bar", true);
  words_->setAlignment(Qt::AlignCenter);
  words_->setContentsMargins(kGrid, kGrid, kGrid, kGrid);
  auto* column = new QVBoxLayout(this);
  column->setContentsMargins(0, 0, 0, 0);
  column->setSpacing(0);
  column->addWidget(line_);
  column->addWidget(words_);
}

void WaitingLine::PutUnder(QWidget* above) {
  above_ = above;
  parentWidget()->installEventFilter(this);
}

void WaitingLine::SetBusy(bool busy) {
  Place();
  line_->SetBusy(busy);
  setVisible(busy);
  raise();
}

QString WaitingLine::Words() const {
  return words_->text();
}

void WaitingLine::Place() {
  if (above_ == nullptr) {
    return;
  }
  setGeometry(0, above_->geometry().bottom() + 1, parentWidget()->width(), sizeHint().height());
}

bool WaitingLine::eventFilter(QObject* watched, QEvent* event) {
  if (event->type() == QEvent::Resize && isVisible()) {
    Place();
  }
  return QFrame::eventFilter(watched, event);
}

}  // namespace tonadex::shell
