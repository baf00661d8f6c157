#pragma once

#include <string>
#include <string_view>

#include "server/store.h"

// The pages that the program's web views show: Spanish HTML in UTF-8 that needs nothing from
// elsewhere, for light and dark windows of any width.
namespace tonadex::server {

// 60 pixels high.
std::string BannerPage(const Store& store);
// How to write and share melodies, and what is new.
std::string InternetPage(const Store& store);
// News, the number of melodies, and whether `version` (Windows-1252, as the program says it) is
// the current one.
std::string StartPage(const Store& store, std::string_view version);

}  // namespace tonadex::server
