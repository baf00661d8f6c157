#pragma once

#include <string_view>

#include "server/handler.h"

namespace tonadex::server {

// Adds the field "ETag", a hash of the body, to a successful reply. If the client's "If-None-Match"
// has the same value, the reply becomes a 304 without a body.
Reply WithETag(Reply reply, std::string_view ifNoneMatch);

}  // namespace tonadex::server
