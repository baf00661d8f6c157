#pragma once

#include <string>
#include <string_view>

#include "server/handler.h"

// The JSON interface for other programs and for the web page: /api/v1, described by openapi.json.
namespace tonadex::server {

// Answers a request; `path` is the part of the target after kApiPath. Without `conversions` there
// is no rate limit for conversions. Throws std::bad_alloc at most.
Reply AnswerApi(const Request& request, std::string_view path, std::string_view query, Store& store,
                RateLimit* conversions);

// The header line "Allow" of a 405 reply for this path.
std::string AllowField(std::string_view path);

// The row's path, for counting requests; "" when no row answers `path`.
std::string_view ApiRoute(std::string_view path);

}  // namespace tonadex::server
