#pragma once

#include <filesystem>
#include <string>

namespace tonadex::net {

// The melody server's address: `argument` (of the command line), else $TONADEX_SERVIDOR, else the
// first line of "servidor.txt" in the program folder, without surrounding blanks and trailing "/".
// "" when none is configured: the embedded server is used.
std::string ConfiguredServer(const std::string& argument,
                             const std::filesystem::path& programFolder);

}  // namespace tonadex::net
