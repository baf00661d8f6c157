#pragma once

#include <windows.h>

#include <functional>
#include <memory>
#include <string_view>

namespace tonadex::platform {

// The system's web browser control in a window. Where the system lacks it, every call does nothing.
class WebControl {
 public:
  enum class Links {
    kFollow,  // the user may follow links
    kReport,  // links are not followed; `left` is called once per click on one
  };

  // A child of `parent`, which owns it; the control itself is created by the first navigation.
  // COM must be initialised in this thread (OleInitialize).
  WebControl(HWND parent, Links links, std::function<void()> left = {});
  ~WebControl();
  WebControl(const WebControl&) = delete;
  WebControl& operator=(const WebControl&) = delete;

  HWND window() const;
  // Loads the address (Windows-1252), also when it is shown already.
  void Navigate(std::string_view url);
  // Call with every message before dispatching it: notices clicks in the page and passes keystrokes
  // to it when it has the focus; true when the page consumed one.
  bool Translate(MSG& message);

 private:
  struct Site;
  Site* site_;  // reference-counted COM object
};

}  // namespace tonadex::platform
