#pragma once

#include <string_view>

#include "server/handler.h"

namespace tonadex::server {

// A successful reply gets the field "ETag", which depends on its body alone; it becomes a 304
// without a body when the client has it already, as its field "If-None-Match" says.
Reply WithETag(Reply reply, std::string_view ifNoneMatch);

}  // namespace tonadex::server
