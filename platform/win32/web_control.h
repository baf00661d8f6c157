#pragma once

#include <windows.h>

#include <functional>
#include <string_view>

namespace tonadex::platform {

// The system's web browser control in a window. On a system without it, every call does nothing.
class WebControl {
 public:
  enum class Links {
    kFollow,  // the user may follow links
    kReport,  // links are not followed; `left` is called once per click on one
  };

  // Creates a child window of `parent`, which owns it; the control itself is created by the first
  // navigation. COM must be initialised in this thread (OleInitialize).
  WebControl(HWND parent, Links links, std::function<void()> left = {});
  ~WebControl();
  WebControl(const WebControl&) = delete;
  WebControl& operator=(const WebControl&) = delete;

  HWND window() const;
  // Loads the URL (Windows-1252), even when it is already shown.
  void Navigate(std::string_view url);
  // Call with every message before dispatching it: detects clicks in the page and passes keystrokes
  // to the page when it has the focus. True when the page consumed the keystroke.
  bool Translate(MSG& message);

 private:
  struct Site;
  Site* site_;  // reference-counted COM object
};

}  // namespace tonadex::platform
