#pragma once

#include <span>
#include <string_view>

#include "app/pages/page.h"
#include "net/addresses.h"

namespace tonadex::app {

// The server's pages in WebBrowser1, and the banner above the other pages.
class WebPage {
 public:
  explicit WebPage(SharedState& state);

  void Timer1_Timer();
  // The user clicked a link in the banner. The shell cancels that navigation and calls this, but
  // not for navigations that the program requested.
  void navbanner_BeforeNavigate() { NavigateBanner(); }

  Control navbanner, WebBrowser1;
  Control Timer1;  // refreshes the banner, every 60 s

  static std::span<const ControlInfo> Rows();
  static Part Layout(bool wide);
  static Part BannerLayout();

 protected:
  // Shows a page of the server (its path) in WebBrowser1, without the banner.
  void Browse(std::string_view path);
  void NavigateBanner() { Navigate(navbanner, net::kBannerPath); }
  void ShowBanner() { navbanner.visible = true; }
  void RefreshBanner(bool hasRoom) { navbanner.hasRoom = hasRoom; }

 private:
  void Navigate(Control& view, std::string_view path);

  SharedState& state_;
};

}  // namespace tonadex::app
