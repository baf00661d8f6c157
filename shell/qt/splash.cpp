#include "shell/qt/splash.h"

#include <QGuiApplication>
#include <QLabel>
#include <QPainter>
#include <QPainterPath>
#include <QScreen>
#include <QTimer>

#include "shell/qt/text.h"
#include "shell/qt/theme/theme.h"

namespace tonadex::shell {
namespace {

QLabel* Words(QWidget* parent, const char* name, const QFont& font, const QRect& place) {
  auto* label = new QLabel(parent);
  label->setObjectName(QLatin1String(name));
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
  auto* title = Words(this, "title", large, QRect(32, 40, 360, 64));
  title->setText(windowTitle());
  QFont plain = theme.body;
  plain.setPixelSize(kType[0]);
  version_ = Words(this, "Label1", plain, QRect(36, 104, 350, 24));
  plain.setPixelSize(kType[1]);
  firstRun_ = Words(this, "Frame1", plain, QRect(36, 180, 350, 48));
  timer_->setObjectName(QStringLiteral("Timer1"));
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
  version_->setText(ToQString(model_.Label1.caption));
  firstRun_->setText(ToQString(model_.Frame1.caption));
  firstRun_->setVisible(model_.Frame1.visible);
  if (!model_.Timer1.enabled) {
    timer_->stop();
  } else if (!timer_->isActive()) {
    timer_->start(static_cast<int>(model_.Timer1.interval));
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
