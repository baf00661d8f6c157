#include "app/pages/web_page.h"

#include <array>
#include <exception>

#include "app/form1.h"
#include "app/layout.h"
#include "core/windows1252.h"

namespace tonadex::app {
namespace {

using namespace core::literals;
using F = Form1;

constexpr std::uint32_t kBannerIntervalMs = 60'000;

constexpr auto kRows = std::to_array<ControlInfo>({
    Row(Look::kBanner, "navbanner", &F::navbanner, "Anuncio del servidor",
        {Event::kNavigation, &F::navbanner_BeforeNavigate}),
    Row(Look::kPage, "WebBrowser1", &F::WebBrowser1, u8"Página del servidor de melodías"_w),
    Row(Look::kTimer, "Timer1", &F::Timer1, "", {Event::kTick, &F::Timer1_Timer}),
});

}  // namespace

std::span<const ControlInfo> WebPage::Rows() {
  return kRows;
}

Part WebPage::Layout(bool /*wide*/) {
  return Column({The(&F::WebBrowser1).Weight(1)});
}

Part WebPage::BannerLayout() {
  return Row({The(&F::navbanner).Weight(1).Heights(look::kBannerHeight, look::kBannerHeight)})
      .Margins(look::kPageMargin, look::kGrid, 0);
}

WebPage::WebPage(SharedState& state) : state_(state) {
  Timer1.interval = kBannerIntervalMs;
}

void WebPage::Navigate(Control& view, std::string_view path) {
  view.address = state_.program.serverBase + std::string(path);
  const auto id = &view == &navbanner ? WebViewId::kNavbanner : WebViewId::kWebBrowser1;
  try {
    state_.program.services.webViews.Navigate(id, view.address);
  } catch (const std::exception&) {
    // A failing web view must not prevent a page from being shown.
  }
}

void WebPage::Browse(std::string_view path) {
  WebBrowser1.visible = true;
  navbanner.visible = false;
  Navigate(WebBrowser1, path);
}

void WebPage::Timer1_Timer() {
  if (navbanner.visible) {
    NavigateBanner();
  }
}

}  // namespace tonadex::app
