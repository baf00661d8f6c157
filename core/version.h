#pragma once

#include <string_view>

namespace tonadex::core {

// Whether "1.0.9" is older than "1.0.12". The numbers of both texts are compared from left to
// right; a missing one counts as 0, and other characters only separate them.
bool IsOlderVersion(std::string_view version, std::string_view than);

}  // namespace tonadex::core
