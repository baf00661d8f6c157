#include "shell/qt/web/browser.h"

#include <QCoreApplication>
#include <QDateTime>
#include <QElapsedTimer>
#include <QEvent>
#include <QTimer>
#include <QWebEngineHistory>
#include <QWebEngineLoadingInfo>
#include <QWebEngineNewWindowRequest>
#include <QWebEnginePage>
#include <QWebEngineProfile>
#include <QWebEngineSettings>
#include <QWebEngineView>

namespace tonadex::shell {
namespace {

constexpr qint64 kClickMs = 1000;  // a navigation within this time of a click is the user's

// The question that javaScriptConfirm gets when a page has a beforeunload handler.
bool AsksToLeave(const QString& question) {
  return question == QCoreApplication::translate("QWebEnginePage",
                                                 "Are you sure you want to leave this page? "
                                                 "Changes that you made may not be saved.");
}

// Shows what the program asked for. A guarded page stays there, whatever its own page wants; others
// follow their links, in the same place also those that want a new window. No page opens a dialog.
class GuardedPage : public QWebEnginePage {
 public:
  GuardedPage(QWebEngineProfile* profile, bool guard, std::function<void()> leaveAttempted)
      : QWebEnginePage(profile), guard_(guard), leaveAttempted_(std::move(leaveAttempted)) {
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
      QTimer::singleShot(0, this, leaveAttempted_);
    }
    return !mainFrame && !clicked;  // frames are content of the page that was asked for
  }

  void javaScriptAlert(const QUrl&, const QString&) override {}
  bool javaScriptConfirm(const QUrl&, const QString& question) override {
    return AsksToLeave(question);
  }
  bool javaScriptPrompt(const QUrl&, const QString&, const QString&, QString*) override {
    return false;
  }
  // Keeps the pages' console messages off the program's standard error.
  void javaScriptConsoleMessage(JavaScriptConsoleMessageLevel, const QString&, int,
                                const QString&) override {}

 private:
  // The program's own load or a redirection of it by the server. A page that is already shown may
  // redirect too, but then it is the last one visited.
  bool IsAsked(NavigationType type) const {
    return type == NavigationTypeTyped || (type == NavigationTypeRedirect &&
                                           history()->currentItem().lastVisited() == shownBefore_);
  }

  // Whether a click caused the navigation; a click is reported once.
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
  std::function<void()> leaveAttempted_;
  QDateTime shownBefore_;  // last visit of the page that the program's load replaces
  QElapsedTimer sinceClick_;
};

// The engine fixes prefers-color-scheme when the program starts; this switches the rules of a page
// when the colours change later.
constexpr char kSchemeScript[] = R"(
  window.schemeRules ??= [...document.styleSheets].flatMap(sheet => [...sheet.cssRules])
      .filter(rule => /prefers-color-scheme: *dark/.test(rule.media?.mediaText));
  window.schemeRules.forEach(rule => { rule.media.mediaText = '%1' == 'dark' ? 'all' : 'not all'; });
  document.documentElement.style.colorScheme = '%1';
)";

class EngineView : public QWebEngineView, public Browser {
 public:
  EngineView(QWidget* parent, bool banner, Events events)
      : QWebEngineView(parent),
        page_(new GuardedPage(new QWebEngineProfile(this),  // keeps nothing on the disk
                              banner, std::move(events.leaveAttempted))) {
    page_->settings()->setAttribute(QWebEngineSettings::ErrorPageEnabled, false);
    page_->settings()->setAttribute(QWebEngineSettings::ShowScrollBars, !banner);
    setPage(page_);
    setContextMenuPolicy(Qt::NoContextMenu);
    setFocusPolicy(banner ? Qt::NoFocus : Qt::StrongFocus);
    connect(page_, &QWebEnginePage::loadingChanged, this,
            [this, banner, loaded = std::move(events.loaded)](const QWebEngineLoadingInfo& info) {
              if (info.status() == QWebEngineLoadingInfo::LoadStartedStatus) {
                return;
              }
              // A stopped load leaves the page that is shown.
              const bool reached = info.status() != QWebEngineLoadingInfo::LoadFailedStatus;
              if (QWidget* inner = focusProxy(); reached && inner != nullptr && banner) {
                inner->setFocusPolicy(Qt::NoFocus);  // nothing in it is for the keyboard
              }
              loaded(reached);
            });
  }

  ~EngineView() override { delete page_; }  // before its profile

  QWidget* View() override { return this; }
  void Load(const QUrl& url) override { page_->Ask(url); }

  void SetColours(const QColor& ground, bool dark) override {
    page_->setBackgroundColor(ground);
    page_->runJavaScript(
        QString::fromLatin1(kSchemeScript).arg(QLatin1String(dark ? "dark" : "light")));
  }

 protected:
  // The view shows the page in a child, which takes the clicks and is replaced now and then.
  bool event(QEvent* event) override {
    if (event->type() == QEvent::ChildAdded) {
      static_cast<QChildEvent*>(event)->child()->installEventFilter(this);
    }
    return QWebEngineView::event(event);
  }

  bool eventFilter(QObject* watched, QEvent* event) override {
    if (event->type() == QEvent::MouseButtonRelease) {
      page_->NoteClick();
    }
    return QWebEngineView::eventFilter(watched, event);
  }

 private:
  GuardedPage* page_;
};

}  // namespace

extern "C" Browser* TonadexMakeBrowser(QWidget* parent, bool banner, Browser::Events events) {
  return new EngineView(parent, banner, std::move(events));
}

}  // namespace tonadex::shell
