#pragma once

#include <string_view>

#include "server/handler.h"

// The interface for other programs and for the page: /api/v1, described by openapi.json.
namespace tonadex::server {

// `path` comes after kApiPath. Without `conversions` these are not limited. Throws only what memory
// throws.
Reply AnswerApi(const Request& request, std::string_view path, std::string_view query, Store& store,
                RateLimit* conversions);

// The path of the table that answers `path`, "" when none does.
std::string_view ApiRoute(std::string_view path);

}  // namespace tonadex::server
