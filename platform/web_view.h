#pragma once

#include <string_view>

namespace tonadex::platform {

enum class WebViewId { kWebBrowser1, kNavbanner };

// The window's two embedded web views. Any call may throw; the program ignores it.
class WebViews {
 public:
  virtual ~WebViews() = default;
  virtual void Navigate(WebViewId view, std::string_view url) = 0;
};

}  // namespace tonadex::platform
