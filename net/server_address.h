#pragma once

#include <filesystem>
#include <string>

namespace tonadex::net {

// The address to use: `argument` (the command line's), else $TONADEX_SERVIDOR, else the first line
// of "servidor.txt" in the program folder; "" when none of them names one, that is, for the
// embedded server. Without blanks around it and without a "/" at its end.
std::string ConfiguredServer(const std::string& argument,
                             const std::filesystem::path& programFolder);

}  // namespace tonadex::net
