#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "server/handler.h"

// The web page at "/" and its files.
namespace tonadex::server {

// The file at this path; empty when the page has no such file.
std::optional<Reply> WebReply(const Request& request, std::string_view path);

// The text of openapi.json.
std::string ContractText();

}  // namespace tonadex::server
