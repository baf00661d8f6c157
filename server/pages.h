#pragma once

#include <string>
#include <string_view>

#include "server/store.h"

// The pages in the desktop program's web views: Spanish HTML in UTF-8 without external resources,
// for light and dark windows of any width.
namespace tonadex::server {

// The banner, as high as the windows show it (kBannerHeight in app/look.h).
std::string BannerPage(const Store& store);
// How to write and share melodies, and news.
std::string InternetPage(const Store& store);
// The start page: news, the number of melodies, and whether `version` (Windows-1252, as sent by the
// program) is the current one.
std::string StartPage(const Store& store, std::string_view version);

}  // namespace tonadex::server
