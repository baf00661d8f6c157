#pragma once

#include <string_view>

namespace tonadex::server {

// The bytes of a file of server/web, or of openapi.json, as compiled into the program; "NAME.gz" is
// the same file compressed. "" for an unknown name.
std::string_view EmbeddedFile(std::string_view name);

}  // namespace tonadex::server
