#include "shell/qt/widgets/melody_view.h"

#include <QHelpEvent>
#include <QKeyEvent>
#include <QPainter>
#include <QPainterPath>
#include <QScrollBar>
#include <QToolTip>
#include <QWheelEvent>
#include <algorithm>
#include <cmath>

#include "shell/qt/text.h"
#include "shell/qt/theme/theme.h"

namespace tonadex::shell {
namespace {

constexpr double kMostPixelsPerMs = 0.2;
constexpr double kNoteHeight = 12;
constexpr int kStaffLines = 5;
constexpr int kLeastSemitones = 12;

double ShortestNote(const app::Drawing& drawing) {
  double shortest = drawing.length;
  for (const app::DrawnNote& note : drawing.notes) {
    if (note.length > 0) {
      shortest = std::min(shortest, note.length);
    }
  }
  return shortest;
}

}  // namespace

MelodyView::MelodyView(QWidget* parent)
    : QWidget(parent), scroll_(new QScrollBar(Qt::Horizontal, this)) {
  setFocusPolicy(Qt::TabFocus);
  setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Expanding);
  setMinimumHeight(kLeastHeight);
  setMaximumHeight(kLargestHeight);
  connect(scroll_, &QScrollBar::valueChanged, this, [this] { update(); });
  scroll_->setFocusPolicy(Qt::NoFocus);
}

void MelodyView::SetDrawing(const app::Drawing& drawing, const QString& words,
                            const QString& invitation) {
  if (drawing.notes == drawing_.notes && invitation == invitation_) {
    return;  // where it was scrolled to, and the sounding note, stay
  }
  drawing_ = drawing;
  invitation_ = invitation;
  sounding_ = -1;
  setAccessibleDescription(words);
  scroll_->setValue(0);
  PlaceScrollBar();
  update();
}

void MelodyView::SetPosition(double ms) {
  const int sounding = ms < 0 ? -1 : app::NoteAt(drawing_, ms);
  if (sounding == sounding_) {
    return;
  }
  sounding_ = sounding;
  if (sounding >= 0) {
    const QRectF box = NoteBox(drawing_.notes[static_cast<std::size_t>(sounding)]);
    const QRectF staff = Staff();
    if (box.right() > staff.right() - 2 * kGrid || box.left() < staff.left()) {
      scroll_->setValue(scroll_->value() + static_cast<int>(box.left() - staff.left()) - 6 * kGrid);
    }
  }
  update();
}

QRectF MelodyView::Staff() const {
  const int bottom = scroll_->isHidden() ? kGrid : scroll_->height() + kGrid;
  return QRectF(rect()).adjusted(1.5 * kGrid, 2.5 * kGrid, -1.5 * kGrid, -bottom - kGrid);
}

// The whole melody in view where its shortest note stays legible, else as long as it takes.
double MelodyView::PixelsPerMs() const {
  if (drawing_.length <= 0) {
    return 0;
  }
  const double fitting = (width() - 3.0 * kGrid) / drawing_.length;
  // The shortest note is to have room for its name.
  const int name = QFontMetrics(CurrentTheme().small).horizontalAdvance(QStringLiteral("sol"));
  const double legible = name / ShortestNote(drawing_);
  return std::max(fitting, std::min(legible, kMostPixelsPerMs));
}

void MelodyView::PlaceScrollBar() {
  const double wanted = PixelsPerMs() * drawing_.length;
  const int page = std::max(1, width() - 3 * kGrid);
  const int hidden = static_cast<int>(std::ceil(wanted)) - page;
  scroll_->setVisible(hidden > 1);
  scroll_->setRange(0, std::max(0, hidden));
  scroll_->setPageStep(page);
  scroll_->setSingleStep(6 * kGrid);
  const int thickness = scroll_->sizeHint().height();
  scroll_->setGeometry(1, height() - thickness - 1, width() - 2, thickness);
}

QRectF MelodyView::NoteBox(const app::DrawnNote& note) const {
  const QRectF staff = Staff();
  const double scale = PixelsPerMs();
  const int spread = std::max(kLeastSemitones, drawing_.highest - drawing_.lowest);
  const double middle = (drawing_.highest + drawing_.lowest) / 2.0;
  const double step = (staff.height() - kNoteHeight) / spread;
  const double y = staff.center().y() - (note.pitch - middle) * step - kNoteHeight / 2;
  const double x = staff.left() + note.start * scale - scroll_->value();
  return {x, y, std::max(3.0, note.length * scale - 2), kNoteHeight};
}

void MelodyView::paintEvent(QPaintEvent*) {
  const Theme theme = CurrentTheme();
  QPainter painter(this);
  painter.setRenderHint(QPainter::Antialiasing);
  painter.setPen(QPen(hasFocus() ? theme.accent : theme.border, hasFocus() ? 2 : 1));
  painter.setBrush(theme.card);
  painter.drawRoundedRect(QRectF(rect()).adjusted(1, 1, -1, -1), kRadius, kRadius);
  QPainterPath inside;
  inside.addRoundedRect(QRectF(rect()).adjusted(2, 2, -2, -2), kRadius, kRadius);
  painter.setClipPath(inside);
  PaintGround(painter);
  if (drawing_.notes.empty()) {
    painter.setPen(theme.muted);
    painter.setFont(theme.body);
    painter.drawText(rect().adjusted(kPageMargin, kGrid, -kPageMargin, -kGrid),
                     Qt::AlignCenter | Qt::TextWordWrap, invitation_);
    return;
  }
  for (std::size_t i = 0; i < drawing_.notes.size(); ++i) {
    if (!drawing_.notes[i].pause) {
      PaintNote(painter, drawing_.notes[i], static_cast<int>(i) == sounding_);
    }
  }
}

void MelodyView::PaintGround(QPainter& painter) const {
  const Theme theme = CurrentTheme();
  const QRectF staff = Staff();
  QColor faint = theme.border;
  faint.setAlphaF(drawing_.notes.empty() ? 0.35F : 0.7F);
  painter.setPen(QPen(faint, 1));
  for (int line = 0; line < kStaffLines; ++line) {
    const double y = staff.top() + (line + 0.5) * staff.height() / kStaffLines;
    painter.drawLine(QPointF(0, y), QPointF(width(), y));
  }
  if (drawing_.barLength <= 0) {
    return;
  }
  painter.setPen(QPen(theme.border, 1));
  for (double at = 0; at < drawing_.length; at += drawing_.barLength) {
    const double x = staff.left() + at * PixelsPerMs() - scroll_->value() - 1;
    if (x > -2 && x < width() + 2) {
      painter.drawLine(QPointF(x, staff.top() - kGrid), QPointF(x, staff.bottom() + kGrid / 2.0));
    }
  }
}

void MelodyView::PaintNote(QPainter& painter, const app::DrawnNote& note, bool sounds) const {
  const Theme theme = CurrentTheme();
  const QRectF box = NoteBox(note);
  if (box.right() < 0 || box.left() > width()) {
    return;
  }
  QColor ink = sounds ? theme.accent : theme.text;
  if (!sounds) {
    ink.setAlphaF(0.62F);
  }
  painter.setPen(note.outside ? QPen(ink, 1.25) : QPen(Qt::NoPen));
  painter.setBrush(note.outside ? QBrush(ink, Qt::BDiagPattern) : QBrush(ink));
  painter.drawRoundedRect(box, 4, 4);
  painter.setPen(sounds ? theme.accent : theme.text);
  if (note.dotted) {
    painter.setBrush(painter.pen().color());
    painter.drawEllipse(QPointF(box.right() - 1, box.top() - 4), 1.8, 1.8);
  }
  QFont font = theme.small;
  font.setBold(sounds);
  painter.setFont(font);
  const QString name = ToQString(note.name);
  const QFontMetrics metrics(font);
  if (metrics.horizontalAdvance(name) <= box.width() + kGrid / 2) {
    painter.drawText(QPointF(box.left(), box.top() - 3), name);
  }
}

void MelodyView::resizeEvent(QResizeEvent* event) {
  QWidget::resizeEvent(event);
  PlaceScrollBar();
}

void MelodyView::wheelEvent(QWheelEvent* event) {
  if (scroll_->isHidden()) {
    event->ignore();
    return;
  }
  const QPoint turn = event->angleDelta();
  scroll_->setValue(scroll_->value() - (turn.x() != 0 ? turn.x() : turn.y()));
}

void MelodyView::keyPressEvent(QKeyEvent* event) {
  const int step = event->key() == Qt::Key_Right  ? scroll_->singleStep()
                   : event->key() == Qt::Key_Left ? -scroll_->singleStep()
                                                  : 0;
  if (step == 0) {
    QWidget::keyPressEvent(event);
    return;
  }
  scroll_->setValue(scroll_->value() + step);
}

bool MelodyView::event(QEvent* event) {
  if (event->type() != QEvent::ToolTip) {
    return QWidget::event(event);
  }
  const auto* help = static_cast<QHelpEvent*>(event);
  const double ms = (help->pos().x() - Staff().left() + scroll_->value()) / PixelsPerMs();
  const int index = drawing_.notes.empty() ? -1 : app::NoteAt(drawing_, ms);
  if (index < 0) {
    QToolTip::hideText();
    return true;
  }
  const app::DrawnNote& note = drawing_.notes[static_cast<std::size_t>(index)];
  const QString what = note.pause ? QStringLiteral("pausa") : ToQString(note.name);
  QToolTip::showText(
      help->globalPos(),
      QStringLiteral("%1, %2 ms%3")
          .arg(what)
          .arg(std::lround(note.length))
          .arg(note.outside ? QStringLiteral(" (fuera del alcance del móvil)") : QString()),
      this);
  return true;
}

}  // namespace tonadex::shell
