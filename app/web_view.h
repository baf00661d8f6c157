#pragma once

#include <string_view>

namespace tonadex::app {

enum class WebViewId { kWebBrowser1, kNavbanner };

// The window's two embedded web views. `url` is Windows-1252. Exceptions are ignored.
class WebViews {
 public:
  virtual ~WebViews() = default;
  virtual void Navigate(WebViewId view, std::string_view url) = 0;
};

}  // namespace tonadex::app
