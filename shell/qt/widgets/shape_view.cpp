#include "shell/qt/widgets/shape_view.h"

#include <QFontMetricsF>
#include <QMouseEvent>
#include <QPainter>

#include "shell/qt/text.h"
#include "shell/qt/theme/theme.h"

namespace tonadex::shell {
namespace {

QColor ColourOf(app::Ink ink, const Theme& theme) {
  const QColor colours[] = {theme.text,          theme.muted,      theme.faint,
                            theme.border,        theme.card,       theme.window,
                            theme.accent,        theme.accentText, theme.accentWash,
                            theme.displayGround, theme.displayInk};
  return colours[static_cast<std::size_t>(ink)];
}

void PaintText(QPainter& painter, const app::Shape& shape, const QRectF& box, const Theme& theme) {
  const QString text = ToQString(shape.text);
  QFont font = shape.mono ? theme.mono : theme.body;
  font.setWeight(shape.bold ? QFont::DemiBold : QFont::Normal);
  constexpr double kFine = 100;  // measured in large type, which has no rounded widths
  font.setPixelSize(static_cast<int>(kFine));
  const double width = QFontMetricsF(font).horizontalAdvance(text) * shape.size / kFine;
  const double size = width > box.width() ? shape.size * box.width() / width : shape.size;
  font.setPixelSize(std::max(1, static_cast<int>(size)));
  painter.setFont(font);
  constexpr int kAligns[] = {Qt::AlignLeft, Qt::AlignHCenter, Qt::AlignRight};
  painter.drawText(box,
                   kAligns[static_cast<std::size_t>(shape.align)] | Qt::AlignVCenter |
                       Qt::TextSingleLine | Qt::TextDontClip,
                   text);
}

void Paint(QPainter& painter, const app::Shape& shape, const Theme& theme) {
  const QRectF box(shape.box.x, shape.box.y, shape.box.width, shape.box.height);
  const QColor colour = ColourOf(shape.ink, theme);
  const bool filled = shape.kind == app::Shape::Kind::kFilled;
  painter.setPen(filled ? QPen(Qt::NoPen) : QPen(colour, shape.size));
  painter.setBrush(filled ? QBrush(colour) : QBrush(Qt::NoBrush));
  if (shape.kind == app::Shape::Kind::kText) {
    PaintText(painter, shape, box, theme);
  } else {
    painter.drawRoundedRect(box, shape.radius, shape.radius);
  }
}

}  // namespace

ShapeView::ShapeView(QWidget* parent) : QWidget(parent) {
  setFocusPolicy(Qt::StrongFocus);
  setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Expanding);
  setCursor(Qt::PointingHandCursor);
}

void ShapeView::SetPicture(const Source& source, const QString& spoken) {
  source_ = source;
  if (accessibleName() != spoken) {
    setAccessibleName(spoken);  // which tells screen readers
  }
  Update();
}

void ShapeView::Update() {
  app::Picture picture = source_ ? source_(width(), height()) : app::Picture();
  if (picture != picture_) {
    picture_ = std::move(picture);
    update();
  }
}

void ShapeView::paintEvent(QPaintEvent*) {
  const Theme theme = CurrentTheme();
  QPainter painter(this);
  PaintCard(painter, *this, theme);
  for (const app::Shape& shape : picture_) {
    Paint(painter, shape, theme);
  }
}

void ShapeView::resizeEvent(QResizeEvent* event) {
  QWidget::resizeEvent(event);
  Update();
}

void ShapeView::mousePressEvent(QMouseEvent* event) {
  if (event->button() == Qt::LeftButton) {
    hit_ = app::HitAt(picture_, event->position().x(), event->position().y());
    emit Clicked();
  }
}

}  // namespace tonadex::shell
