#include "shell/qt/widgets/web_pane.h"

#include <dlfcn.h>

#include <QCoreApplication>
#include <QEvent>
#include <QLabel>
#include <QOpenGLContext>
#include <QTimer>

#include "app/words.h"
#include "shell/qt/text.h"
#include "shell/qt/theme/theme.h"
#include "shell/qt/web/browser.h"

QT_BEGIN_NAMESPACE
Q_GUI_EXPORT void qt_gl_set_global_share_context(QOpenGLContext* context);
Q_GUI_EXPORT QOpenGLContext* qt_gl_global_share_context();
QT_END_NAMESPACE

namespace tonadex::shell {
namespace {

// The context that the web engine shares with the window. Qt creates it with the application when
// it is asked before, which takes as long as all the rest up to the splash; so this asks late.
void ShareOpenGl() {
  const auto handler =
      qInstallMessageHandler([](QtMsgType, const QMessageLogContext&, const QString&) {});
  QCoreApplication::setAttribute(Qt::AA_ShareOpenGLContexts);  // warns that it is late
  qInstallMessageHandler(handler);
  auto* context = new QOpenGLContext;
  context->create();
  qt_gl_set_global_share_context(context);
  qAddPostRoutine([] {
    delete qt_gl_global_share_context();
    qt_gl_set_global_share_context(nullptr);
  });
}

// Loads the module with the first browser; null where it is not installed. The loader finds it by
// the program's run path.
MakeBrowser* BrowserMaker() {
  static MakeBrowser* const maker = [] {
    ShareOpenGl();
    qputenv("QTWEBENGINE_ENABLE_LINUX_ACCESSIBILITY", "1");  // or screen readers hear no page
    void* module = dlopen(kBrowserModule, RTLD_NOW);
    return module == nullptr ? nullptr
                             : reinterpret_cast<MakeBrowser*>(dlsym(module, kMakeBrowser));
  }();
  return maker;
}

}  // namespace

WebPane::WebPane(Kind kind, QWidget* parent)
    : QStackedWidget(parent), kind_(kind), quiet_(new QLabel(this)) {
  quiet_->setAlignment(Qt::AlignCenter);
  quiet_->setWordWrap(true);
  quiet_->setTextFormat(Qt::PlainText);
  quiet_->setProperty("muted", true);
  addWidget(quiet_);
}

void WebPane::Navigate(std::string_view address) {
  address_ = address;
  pending_ = true;
  if (isVisible()) {
    Load();
  }
}

void WebPane::showEvent(QShowEvent* event) {
  QStackedWidget::showEvent(event);
  if (pending_) {
    // The window is to be painted before the browser is made.
    QTimer::singleShot(0, this, &WebPane::Load);
  }
}

void WebPane::ShowQuietPage() {
  const QString words = ToQString(app::words::kNoWebView) + QLatin1String("\n\n") +
                        ToQString(app::words::kNoWebViewHint);
  quiet_->setText(kind_ == Kind::kPage ? words : QString());
  setCurrentWidget(quiet_);
  TakePlace(kind_ == Kind::kPage);
}

// A banner that has nothing to say leaves its place to the page.
void WebPane::TakePlace(bool place) {
  if (kind_ == Kind::kBanner) {
    setFixedHeight(place ? kBannerHeight : 0);
  }
}

void WebPane::changeEvent(QEvent* event) {
  QStackedWidget::changeEvent(event);
  if (event->type() == QEvent::PaletteChange) {
    FollowScheme();
  }
}

void WebPane::FollowScheme() {
  if (browser_ != nullptr) {
    const Theme theme = CurrentTheme();
    browser_->SetColours(theme.window, theme.dark);
  }
}

void WebPane::Prepare() {
  MakeBrowser* const make = BrowserMaker();
  if (browser_ != nullptr || make == nullptr) {
    return;
  }
  const auto loaded = [this](bool reached) {
    if (reached) {
      FollowScheme();
      setCurrentWidget(browser_->View());
      TakePlace(true);
    } else {
      ShowQuietPage();
    }
  };
  browser_ = make(this, kind_ == Kind::kBanner, {loaded, [this] { emit LeaveAttempted(); }});
  FollowScheme();
  addWidget(browser_->View());
}

void WebPane::Load() {
  if (!pending_) {
    return;
  }
  pending_ = false;
  Prepare();
  if (browser_ == nullptr) {
    ShowQuietPage();
  } else {
    browser_->Load(QUrl::fromEncoded(QByteArray::fromStdString(address_)));
  }
}

}  // namespace tonadex::shell
