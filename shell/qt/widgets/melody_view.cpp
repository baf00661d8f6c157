#include "shell/qt/widgets/melody_view.h"

#include <QHelpEvent>
#include <QKeyEvent>
#include <QPainter>
#include <QPainterPath>
#include <QScrollBar>
#include <QToolTip>
#include <QWheelEvent>

#include "shell/qt/text.h"
#include "shell/qt/theme/theme.h"

namespace tonadex::shell {
namespace {

QRectF RectOf(const app::Box& box) {
  return {box.x, box.y, box.width, box.height};
}

}  // namespace

MelodyView::MelodyView(QWidget* parent)
    : QWidget(parent), scroll_(new QScrollBar(Qt::Horizontal, this)) {
  setFocusPolicy(Qt::TabFocus);
  setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Expanding);
  connect(scroll_, &QScrollBar::valueChanged, this, [this](int value) {
    picture_.ScrollTo(value);
    update();
  });
  scroll_->setFocusPolicy(Qt::NoFocus);
}

void MelodyView::SetDrawing(const app::Drawing& drawing, const QString& invitation) {
  if (drawing.notes == picture_.drawing().notes && invitation == invitation_) {
    return;  // where it was scrolled to, and the sounding note, stay
  }
  invitation_ = invitation;
  picture_.SetDrawing(drawing);
  setAccessibleDescription(ToQString(app::DrawingInWords(drawing)));
  FitPicture();
  update();
}

void MelodyView::SetPosition(double ms) {
  if (picture_.Follow(ms)) {
    scroll_->setValue(static_cast<int>(picture_.scrolled()));
    update();
  }
}

// The scroll bar takes its height from the picture.
void MelodyView::FitPicture() {
  const int name = QFontMetrics(CurrentTheme().small).horizontalAdvance(QStringLiteral("sol"));
  const int thickness = scroll_->sizeHint().height();
  app::PictureSize size{static_cast<double>(width()), static_cast<double>(height()),
                        static_cast<double>(name)};
  picture_.SetSize(size);
  const bool longer = picture_.Overflow() > 0;
  if (longer) {
    size.height -= thickness;
    picture_.SetSize(size);
  }
  const double scrolled = picture_.scrolled();
  scroll_->setVisible(longer);
  scroll_->setRange(0, static_cast<int>(picture_.Overflow()));
  scroll_->setPageStep(static_cast<int>(picture_.Page()));
  scroll_->setSingleStep(static_cast<int>(app::MelodyPicture::kScrollStep));
  scroll_->setValue(static_cast<int>(scrolled));
  scroll_->setGeometry(1, height() - thickness - 1, width() - 2, thickness);
}

void MelodyView::ScrollBy(int pixels) {
  scroll_->setValue(scroll_->value() + pixels);
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
  if (picture_.drawing().notes.empty()) {
    painter.setPen(theme.muted);
    painter.setFont(theme.body);
    painter.drawText(rect().adjusted(kPageMargin, kGrid, -kPageMargin, -kGrid),
                     Qt::AlignCenter | Qt::TextWordWrap, invitation_);
    return;
  }
  for (const std::size_t index : picture_.NotesInView()) {
    PaintNote(painter, index);
  }
}

void MelodyView::PaintGround(QPainter& painter) const {
  const Theme theme = CurrentTheme();
  QColor faint = theme.border;
  faint.setAlphaF(picture_.drawing().notes.empty() ? 0.35F : 0.7F);
  painter.setPen(QPen(faint, 1));
  for (const double y : picture_.StaffLines()) {
    painter.drawLine(QPointF(0, y), QPointF(width(), y));
  }
  painter.setPen(QPen(theme.border, 1));
  for (const app::Box& bar : picture_.BarLines()) {
    painter.drawLine(QPointF(bar.x, bar.y), QPointF(bar.x, bar.bottom()));
  }
}

void MelodyView::PaintNote(QPainter& painter, std::size_t index) const {
  const Theme theme = CurrentTheme();
  const app::DrawnNote& note = picture_.drawing().notes[index];
  const QRectF box = RectOf(picture_.NoteBox(index));
  const bool sounds = static_cast<int>(index) == picture_.sounding();
  QColor ink = sounds ? theme.accent : theme.text;
  if (!sounds) {
    ink.setAlphaF(0.62F);
  }
  painter.setPen(note.outside ? QPen(ink, 1.25) : QPen(Qt::NoPen));
  painter.setBrush(note.outside ? QBrush(ink, Qt::BDiagPattern) : QBrush(ink));
  painter.drawRoundedRect(box, app::kNoteRadius, app::kNoteRadius);
  painter.setPen(sounds ? theme.accent : theme.text);
  if (note.dotted) {
    painter.setBrush(painter.pen().color());
    painter.drawEllipse(QPointF(box.right() - 1, box.top() - app::kDotRise), app::kDotRadius,
                        app::kDotRadius);
  }
  QFont font = theme.small;
  font.setBold(sounds);
  painter.setFont(font);
  const QString name = ToQString(note.name);
  if (QFontMetrics(font).horizontalAdvance(name) <= box.width() + app::kNameOverhang) {
    painter.drawText(QPointF(box.left(), box.top() - app::kNameRise), name);
  }
}

void MelodyView::resizeEvent(QResizeEvent* event) {
  QWidget::resizeEvent(event);
  FitPicture();
}

void MelodyView::wheelEvent(QWheelEvent* event) {
  if (scroll_->isHidden()) {
    event->ignore();
    return;
  }
  const QPoint turn = event->angleDelta();
  ScrollBy(-(turn.x() != 0 ? turn.x() : turn.y()));
}

void MelodyView::keyPressEvent(QKeyEvent* event) {
  if (event->key() == Qt::Key_Right || event->key() == Qt::Key_Left) {
    ScrollBy(event->key() == Qt::Key_Right ? scroll_->singleStep() : -scroll_->singleStep());
    return;
  }
  QWidget::keyPressEvent(event);
}

bool MelodyView::event(QEvent* event) {
  if (event->type() == QEvent::FontChange || event->type() == QEvent::StyleChange) {
    FitPicture();  // names take another width
  }
  if (event->type() != QEvent::ToolTip) {
    return QWidget::event(event);
  }
  const auto* help = static_cast<QHelpEvent*>(event);
  const int index = picture_.NoteUnder(help->pos().x());
  if (index < 0) {
    QToolTip::hideText();
    return true;
  }
  const auto& note = picture_.drawing().notes[static_cast<std::size_t>(index)];
  QToolTip::showText(help->globalPos(), ToQString(app::NoteInWords(note)), this);
  return true;
}

}  // namespace tonadex::shell
