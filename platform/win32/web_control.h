#pragma once

#include <windows.h>

#include <functional>
#include <memory>
#include <string_view>

namespace tonadex::platform {

// The system's web browser control in a window. Where the system has none, or the control cannot
// show pages, nothing happens: every call is silent.
class WebControl {
 public:
  enum class Links {
    kFollow,  // the user may walk on from the page
    kReport,  // leaving the page is stopped; once for each click that tried it `left` is called
  };

  // A child of `parent`, which owns it; the control itself is made with the first navigation.
  // COM must be initialised in this thread (OleInitialize).
  WebControl(HWND parent, Links links, std::function<void()> left = {});
  ~WebControl();
  WebControl(const WebControl&) = delete;
  WebControl& operator=(const WebControl&) = delete;

  HWND window() const;
  // Loads the address (Windows-1252), again when it is shown already.
  void Navigate(std::string_view url);
  // To be shown every message before it is dispatched, for the clicks in the page. Gives a
  // keystroke to the page that has the focus; true when the page took it.
  bool Translate(MSG& message);

 private:
  struct Site;
  Site* site_;  // counted by reference, like everything that the control holds
};

}  // namespace tonadex::platform
