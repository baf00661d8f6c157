#pragma once

#include <windows.h>

namespace tonadex::shell {

// Posted when the user clicks a link in the banner, so that it is handled after the control's
// event.
inline constexpr UINT kBannerLeft = WM_APP + 1;

}  // namespace tonadex::shell
