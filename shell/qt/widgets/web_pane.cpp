#include "shell/qt/widgets/web_pane.h"

#include <QEvent>
#include <QLabel>
#include <QTimer>

#include "app/words.h"
#include "shell/qt/text.h"
#include "shell/qt/theme/theme.h"

#ifdef TONADEX_WEBENGINE
#include <QWebEnginePage>
#include <QWebEngineProfile>
#include <QWebEngineSettings>
#include <QWebEngineView>
#endif

namespace tonadex::shell {
namespace {

#ifdef TONADEX_WEBENGINE
// Stays where the program sent it when `guard` says so; windows that a page opens are refused.
class GuardedPage : public QWebEnginePage {
 public:
  GuardedPage(QWebEngineProfile* profile, bool guard, WebPane* pane)
      : QWebEnginePage(profile, pane), guard_(guard), pane_(pane) {}

 protected:
  bool acceptNavigationRequest(const QUrl& url, NavigationType type, bool mainFrame) override {
    const bool clicked = type == NavigationTypeLinkClicked || type == NavigationTypeFormSubmitted;
    if (guard_ && mainFrame && clicked) {
      // Not from within the page's own call: the answer is a new navigation.
      QTimer::singleShot(0, pane_, [pane = pane_] { emit pane->LeaveAttempted(); });
      return false;
    }
    return QWebEnginePage::acceptNavigationRequest(url, type, mainFrame);
  }

 private:
  bool guard_;
  WebPane* pane_;
};

// The browser knows no colours but those with which the program began: what a page keeps for dark
// ones is switched on or off here.
constexpr char kSchemeScript[] = R"(
  window.schemeRules ??= [...document.styleSheets].flatMap(sheet => [...sheet.cssRules])
      .filter(rule => /prefers-color-scheme: *dark/.test(rule.media?.mediaText));
  window.schemeRules.forEach(rule => { rule.media.mediaText = '%1' == 'dark' ? 'all' : 'not all'; });
  document.documentElement.style.colorScheme = '%1';
)";
#endif

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
}

void WebPane::changeEvent(QEvent* event) {
  QStackedWidget::changeEvent(event);
  if (event->type() == QEvent::PaletteChange && view_ != nullptr) {
    FollowScheme();
  }
}

#ifdef TONADEX_WEBENGINE
void WebPane::FollowScheme() {
  const Theme theme = CurrentTheme();
  view_->page()->setBackgroundColor(theme.window);
  view_->page()->runJavaScript(
      QString::fromLatin1(kSchemeScript).arg(QLatin1String(theme.dark ? "dark" : "light")));
}

void WebPane::Prepare() {
  if (view_ == nullptr) {
    view_ = new QWebEngineView(this);
    auto* profile = new QWebEngineProfile(view_);  // keeps nothing on the disk
    auto* page = new GuardedPage(profile, kind_ == Kind::kBanner, this);
    page->settings()->setAttribute(QWebEngineSettings::ErrorPageEnabled, false);
    page->settings()->setAttribute(QWebEngineSettings::ShowScrollBars, kind_ == Kind::kPage);
    view_->setPage(page);
    FollowScheme();
    view_->setContextMenuPolicy(Qt::NoContextMenu);
    view_->setFocusPolicy(kind_ == Kind::kBanner ? Qt::NoFocus : Qt::StrongFocus);
    connect(view_, &QWebEngineView::loadFinished, this, [this](bool loaded) {
      if (loaded) {
        FollowScheme();
        if (QWidget* inner = view_->focusProxy(); inner != nullptr && kind_ == Kind::kBanner) {
          inner->setFocusPolicy(Qt::NoFocus);  // nothing in it is for the keyboard
        }
        setCurrentWidget(view_);
      } else {
        ShowQuietPage();
      }
    });
    addWidget(view_);
  }
}

void WebPane::Load() {
  if (!pending_) {
    return;
  }
  pending_ = false;
  Prepare();
  view_->load(QUrl::fromEncoded(QByteArray::fromStdString(address_)));
}
#else
void WebPane::FollowScheme() {}
void WebPane::Prepare() {}

void WebPane::Load() {
  pending_ = false;
  ShowQuietPage();
}
#endif

}  // namespace tonadex::shell
