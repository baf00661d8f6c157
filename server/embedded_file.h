#pragma once

#include <string_view>

namespace tonadex::server {

// The bytes of a file of server/web, or of the interface's description, as it was when the program
// was built; with ".gz" behind its name the same, compressed. "" when there is none of that name.
std::string_view EmbeddedFile(std::string_view name);

}  // namespace tonadex::server
