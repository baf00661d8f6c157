#pragma once

#include <QColor>
#include <QUrl>
#include <functional>

class QWidget;

namespace tonadex::shell {

// The browser in a WebPane. Its libraries take longer to load than the splash takes to be painted,
// so it is a module that the program loads afterwards, and that a system may lack.
class Browser {
 public:
  struct Events {
    std::function<void(bool reached)> loaded;
    std::function<void()> leaveAttempted;  // as WebPane::LeaveAttempted
  };

  virtual ~Browser() = default;
  virtual QWidget* View() = 0;
  virtual void Load(const QUrl& url) = 0;
  // What stands behind the page, and the colours that the page is asked for.
  virtual void SetColours(const QColor& ground, bool dark) = 0;
};

// Makes the browser as a child of `parent`, which owns it. A banner reports its links, a page
// follows them.
using MakeBrowser = Browser*(QWidget* parent, bool banner, Browser::Events events);

inline constexpr char kBrowserModule[] = "libtonadex-web.so";
inline constexpr char kMakeBrowser[] = "TonadexMakeBrowser";

}  // namespace tonadex::shell
