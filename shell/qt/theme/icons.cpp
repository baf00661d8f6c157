#include "shell/qt/theme/icons.h"

#include <QFile>
#include <QFontMetrics>
#include <QIconEngine>
#include <QPainter>
#include <QPixmap>
#include <QSvgRenderer>

#include "shell/qt/theme/theme.h"

namespace tonadex::shell {
namespace {

QColor Tint(const Theme& theme, IconInk ink, QIcon::Mode mode, QIcon::State state) {
  if (mode == QIcon::Disabled) {
    QColor faint = theme.muted;
    faint.setAlphaF(0.55F);
    return faint;
  }
  switch (ink) {
    case IconInk::kOnAccent:
      return theme.accentText;
    case IconInk::kAccent:
      return theme.accent;
    case IconInk::kBad:
      return theme.bad;
    case IconInk::kText:
      break;
  }
  return state == QIcon::On ? theme.accent : theme.text;
}

// Draws the SVG anew for each size, with its "currentColor" replaced: never a scaled bitmap.
class ThemedIconEngine : public QIconEngine {
 public:
  ThemedIconEngine(QString name, IconInk ink) : name_(std::move(name)), ink_(ink) {}

  void paint(QPainter* painter, const QRect& rect, QIcon::Mode mode, QIcon::State state) override {
    const QColor tint = Tint(CurrentTheme(), ink_, mode, state);
    QSvgRenderer svg(QByteArray(Source()).replace("currentColor", tint.name().toLatin1()));
    painter->save();
    painter->setOpacity(painter->opacity() * static_cast<qreal>(tint.alphaF()));
    svg.render(painter, QRectF(rect));
    painter->restore();
  }

  QPixmap pixmap(const QSize& size, QIcon::Mode mode, QIcon::State state) override {
    QPixmap picture(size);
    picture.fill(Qt::transparent);
    QPainter painter(&picture);
    paint(&painter, QRect(QPoint(0, 0), size), mode, state);
    return picture;
  }

  QIconEngine* clone() const override { return new ThemedIconEngine(name_, ink_); }
  bool isNull() override { return Source().isEmpty(); }

 private:
  const QByteArray& Source() const {
    if (source_.isEmpty()) {
      QFile file(QStringLiteral(":/shell/icons/%1.svg").arg(name_));
      if (file.open(QIODevice::ReadOnly)) {
        source_ = file.readAll();
      }
    }
    return source_;
  }

  QString name_;
  IconInk ink_;
  mutable QByteArray source_;
};

}  // namespace

QIcon ThemedIcon(const QString& name, IconInk ink) {
  return QIcon(new ThemedIconEngine(name, ink));
}

QSize IconSize() {
  const int side = QFontMetrics(CurrentTheme().body).height() + kFieldGap / 2;
  return {side, side};
}

}  // namespace tonadex::shell
