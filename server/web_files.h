#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "server/handler.h"

// The page for browsers at "/" and its files.
namespace tonadex::server {

// None for a path that is no file of the page.
std::optional<Reply> WebReply(const Request& request, std::string_view path);

// openapi.json.
std::string ContractText();

}  // namespace tonadex::server
