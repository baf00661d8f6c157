#include "shell/qt/widgets/web_pane.h"

#include <QEvent>
#include <QLabel>
#include <QTimer>

#include "app/words.h"
#include "shell/qt/text.h"
#include "shell/qt/theme/theme.h"

#ifdef TONADEX_WEBENGINE
#include <QCoreApplication>
#include <QDateTime>
#include <QElapsedTimer>
#include <QWebEngineHistory>
#include <QWebEngineLoadingInfo>
#include <QWebEngineNewWindowRequest>
#include <QWebEnginePage>
#include <QWebEngineProfile>
#include <QWebEngineSettings>
#include <QWebEngineView>
#endif

namespace tonadex::shell {
namespace {

#ifdef TONADEX_WEBENGINE
constexpr qint64 kClickMs = 1000;  // what a page does this long after a click, the click began

// What the browser asks with javaScriptConfirm before it leaves a page that would rather stay.
bool AsksToLeave(const QString& question) {
  return question == QCoreApplication::translate("QWebEnginePage",
                                                 "Are you sure you want to leave this page? "
                                                 "Changes that you made may not be saved.");
}

// Shows what the program asked for. A guarded page stays there, whatever its own page wants; others
// follow their links, in the same place also those that want a new window. No page opens a dialog.
class GuardedPage : public QWebEnginePage {
 public:
  GuardedPage(QWebEngineProfile* profile, bool guard, WebPane* pane)
      : QWebEnginePage(profile, pane), guard_(guard), pane_(pane) {
    connect(this, &QWebEnginePage::newWindowRequested, this, &GuardedPage::AnswerNewWindow);
  }

  void Ask(const QUrl& url) {
    shownBefore_ = history()->currentItem().lastVisited();
    load(url);
  }

  void NoteClick() { sinceClick_.start(); }

 protected:
  bool acceptNavigationRequest(const QUrl& url, NavigationType type, bool mainFrame) override {
    if (!guard_ || IsAsked(type)) {
      return QWebEnginePage::acceptNavigationRequest(url, type, mainFrame);
    }
    const bool clicked = TakeClick();
    if (clicked) {
      // Not from within the page's own call: the answer is a new navigation.
      QTimer::singleShot(0, pane_, [pane = pane_] { emit pane->LeaveAttempted(); });
    }
    return !mainFrame && !clicked;  // a frame's content is a part of what was asked for
  }

  void javaScriptAlert(const QUrl&, const QString&) override {}
  bool javaScriptConfirm(const QUrl&, const QString& question) override {
    return AsksToLeave(question);
  }
  bool javaScriptPrompt(const QUrl&, const QString&, const QString&, QString*) override {
    return false;
  }
  // What pages tell their authors is not for the program's standard error.
  void javaScriptConsoleMessage(JavaScriptConsoleMessageLevel, const QString&, int,
                                const QString&) override {}

 private:
  // The program's own load, or where the server sends it on. A page that stands redirects, too: by
  // then it is the one visited last.
  bool IsAsked(NavigationType type) const {
    return type == NavigationTypeTyped || (type == NavigationTypeRedirect &&
                                           history()->currentItem().lastVisited() == shownBefore_);
  }

  // Whether a click began what the page does now. One click is told of once.
  bool TakeClick() {
    const bool clicked = sinceClick_.isValid() && sinceClick_.elapsed() < kClickMs;
    sinceClick_.invalidate();
    return clicked;
  }

  void AnswerNewWindow(const QWebEngineNewWindowRequest& request) {
    const QUrl url = request.requestedUrl();
    if (guard_) {
      acceptNavigationRequest(url, NavigationTypeOther, true);
    } else if (request.isUserInitiated() && url.scheme().startsWith(QLatin1String("http"))) {
      QTimer::singleShot(0, this, [this, url] { Ask(url); });
    }
  }

  bool guard_;
  WebPane* pane_;
  QDateTime shownBefore_;  // when the page was loaded that the program's load replaces
  QElapsedTimer sinceClick_;
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
    view_->installEventFilter(this);
    view_->setPage(page);
    FollowScheme();
    view_->setContextMenuPolicy(Qt::NoContextMenu);
    view_->setFocusPolicy(kind_ == Kind::kBanner ? Qt::NoFocus : Qt::StrongFocus);
    connect(page, &QWebEnginePage::loadingChanged, this, [this](const QWebEngineLoadingInfo& info) {
      // A page whose own navigation was stopped stands.
      if (info.status() == QWebEngineLoadingInfo::LoadStartedStatus) {
        return;
      }
      if (info.status() != QWebEngineLoadingInfo::LoadFailedStatus) {
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
  static_cast<GuardedPage*>(view_->page())
      ->Ask(QUrl::fromEncoded(QByteArray::fromStdString(address_)));
}

// The view shows the page in a child, which takes the clicks and is made anew now and then.
bool WebPane::eventFilter(QObject* watched, QEvent* event) {
  if (watched == view_ && event->type() == QEvent::ChildAdded) {
    static_cast<QChildEvent*>(event)->child()->installEventFilter(this);
  } else if (watched != view_ && event->type() == QEvent::MouseButtonRelease) {
    static_cast<GuardedPage*>(view_->page())->NoteClick();
  }
  return QStackedWidget::eventFilter(watched, event);
}
#else
void WebPane::FollowScheme() {}
void WebPane::Prepare() {}

bool WebPane::eventFilter(QObject* watched, QEvent* event) {
  return QStackedWidget::eventFilter(watched, event);
}

void WebPane::Load() {
  pending_ = false;
  ShowQuietPage();
}
#endif

}  // namespace tonadex::shell
