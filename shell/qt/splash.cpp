#include "shell/qt/splash.h"

#include <QGuiApplication>
#include <QLabel>
#include <QPainter>
#include <QScreen>
#include <QTimer>

#include "shell/qt/text.h"
#include "shell/qt/theme/theme.h"

namespace tonadex::shell {
namespace {

QLabel* Words(QWidget* parent, const QString& name, const QFont& font, const QRect& place) {
  auto* label = new QLabel(parent);
  label->setObjectName(name);
  label->setFont(font);
  label->setWordWrap(true);
  label->setGeometry(place);
  QPalette palette = label->palette();
  palette.setColor(QPalette::WindowText, QColor(QRgb{kSplash.ink}));
  label->setPalette(palette);
  return label;
}

}  // namespace

Splash::Splash(app::Program& program)
    : QWidget(nullptr, Qt::SplashScreen | Qt::FramelessWindowHint),
      program_(program),
      model_(program),
      pattern_(app::SplashBars()),
      timer_(new QTimer(this)) {
  setFixedSize(kSplash.width, kSplash.height);
  setWindowTitle(QStringLiteral("Tonadex"));
  const Theme theme = CurrentTheme();
  QFont large = theme.title;
  large.setPixelSize(52);
  large.setWeight(QFont::Bold);
  auto* title = Words(this, QStringLiteral("title"), large, QRect(32, 40, 360, 64));
  title->setText(windowTitle());
  for (const auto& [name, label, place, type] : app::inicio::Lines()) {
    QFont plain = theme.body;
    plain.setPixelSize(kType[static_cast<std::size_t>(type)]);
    lines_.push_back(Words(this, ToQString(name), plain,
                           QRectF(place.x, place.y, place.width, place.height).toRect()));
  }
  connect(timer_, &QTimer::timeout, this, &Splash::Tick);
}

void Splash::Start() {
  const QRect screen = QGuiApplication::primaryScreen()->availableGeometry();
  move(screen.center() - rect().center());
  show();
  app::RunHandler(program_, [this] { model_.Form_Load(static_cast<std::intptr_t>(winId())); });
  Draw();
}

void Splash::Tick() {
  app::RunHandler(program_, [this] { model_.Timer1_Timer(); });
  Draw();
  if (model_.finished) {
    emit Finished();
  }
}

void Splash::Draw() {
  for (std::size_t i = 0; i < lines_.size(); ++i) {
    const app::Control& control = model_.*app::inicio::Lines()[i].label;
    lines_[i]->setText(ToQString(control.caption));
    lines_[i]->setVisible(control.visible);
  }
  if (!model_.Timer().enabled) {
    timer_->stop();
  } else if (!timer_->isActive()) {
    timer_->start(static_cast<int>(model_.Timer().interval));
  }
}

void Splash::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  painter.setRenderHint(QPainter::Antialiasing);
  painter.fillRect(rect(), QColor(QRgb{kSplash.ground}));
  QColor quiet(QRgb{kSplash.ink});
  quiet.setAlphaF(static_cast<float>(kSplash.pattern));
  painter.setPen(Qt::NoPen);
  painter.setBrush(quiet);
  for (const app::Box& bar : pattern_) {
    painter.drawRoundedRect(QRectF(bar.x, bar.y, bar.width, bar.height), bar.height / 2,
                            bar.height / 2);
  }
}

}  // namespace tonadex::shell
