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

void Paint(QPainter& painter, const app::PictureMark& mark, const Theme& theme) {
  using Shape = app::PictureMark::Shape;
  const QRectF box(mark.box.x, mark.box.y, mark.box.width, mark.box.height);
  QColor ink = mark.shape == Shape::kLine ? theme.border : mark.sounds ? theme.accent : theme.text;
  ink.setAlphaF(static_cast<float>(mark.opacity));
  painter.setPen(Qt::NoPen);
  painter.setBrush(ink);
  switch (mark.shape) {
    case Shape::kLine:
      painter.setPen(ink);
      painter.drawLine(box.topLeft(), box.bottomRight());
      break;
    case Shape::kHatched:
      painter.setPen(QPen(ink, 1.25));
      painter.setBrush(QBrush(ink, Qt::BDiagPattern));
      [[fallthrough]];
    case Shape::kNote:
      painter.drawRoundedRect(box, app::kNoteRadius, app::kNoteRadius);
      break;
    case Shape::kDot:
      painter.drawEllipse(box);
      break;
    case Shape::kNoteName: {
      QFont font = theme.small;
      font.setBold(mark.sounds);
      painter.setFont(font);
      painter.setPen(ink);
      const QString name = ToQString(mark.name);
      if (QFontMetrics(font).horizontalAdvance(name) <= box.width()) {
        painter.drawText(box.bottomLeft(), name);
      }
    }
  }
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
    Show(picture_.Show(drawing.shown));
    return;  // where it was scrolled to, and the sounding note, stay
  }
  invitation_ = invitation;
  picture_.SetDrawing(drawing);
  setAccessibleDescription(ToQString(app::DrawingInWords(drawing)));
  FitPicture();
  update();
}

void MelodyView::SetPosition(double ms) {
  Show(picture_.Follow(ms));
}

void MelodyView::Mark(int note) {
  Show(picture_.Mark(note));
}

void MelodyView::Show(bool changed) {
  if (changed) {
    scroll_->setValue(static_cast<int>(picture_.scrolled()));
    update();
  }
}

// Whether a scroll bar is needed depends on the size without it, so the size is set twice.
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
  PaintCard(painter, *this, theme);
  QPainterPath inside;
  inside.addRoundedRect(QRectF(rect()).adjusted(2, 2, -2, -2), kRadius, kRadius);
  painter.setClipPath(inside);
  for (const app::PictureMark& mark : picture_.Marks()) {
    Paint(painter, mark, theme);
  }
  if (picture_.drawing().notes.empty()) {
    painter.setPen(theme.muted);
    painter.setFont(theme.body);
    painter.drawText(rect().adjusted(kPageMargin, kGrid, -kPageMargin, -kGrid),
                     Qt::AlignCenter | Qt::TextWordWrap, invitation_);
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
    FitPicture();  // the width of note names has changed
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
