#pragma once

#include <optional>
#include <string_view>

#include "server/delivery.h"

// The web page at "/" and its files.
namespace tonadex::server {

// The file at this path; empty when the page has no such file.
std::optional<Reply> WebReply(const Request& request, std::string_view path);

// A file that is compiled into the program (embedded_file.h).
FixedBody EmbeddedBody(std::string_view name);

}  // namespace tonadex::server
