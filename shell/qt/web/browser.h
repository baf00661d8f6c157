#pragma once

#include <QColor>
#include <QUrl>
#include <functional>

class QWidget;

namespace tonadex::shell {

// The browser in a WebPane. Its libraries load slowly, so it is a module that the program loads
// after painting the splash; it may not be installed.
class Browser {
 public:
  struct Events {
    std::function<void(bool reached)> loaded;
    std::function<void()> leaveAttempted;  // as WebPane::LeaveAttempted
  };

  virtual ~Browser() = default;
  virtual QWidget* View() = 0;
  virtual void Load(const QUrl& url) = 0;
  // Sets the background behind the page, and whether the page is asked for dark colours.
  virtual void SetColours(const QColor& ground, bool dark) = 0;
};

// Makes the browser as a child of `parent`, which owns it. A banner reports its links, a page
// follows them.
using MakeBrowser = Browser*(QWidget* parent, bool banner, Browser::Events events);

inline constexpr char kBrowserModule[] = "libtonadex-web.so";
inline constexpr char kMakeBrowser[] = "TonadexMakeBrowser";

}  // namespace tonadex::shell
