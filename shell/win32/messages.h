#pragma once

#include <windows.h>

namespace tonadex::shell {

// The banner wanted to lead elsewhere: raised once its own event is over.
inline constexpr UINT kBannerLeft = WM_APP + 1;

}  // namespace tonadex::shell
