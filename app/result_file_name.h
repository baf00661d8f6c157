#pragma once

#include <string>
#include <string_view>

namespace tonadex::app {

// The proposal for "Guardar como…": the row's stem and the extension of the model's format
// ("vals.rtttl", "vals.txt"); characters that a file name cannot hold become "_".
std::string SuggestedFileName(std::string_view row, std::string_view model);

}  // namespace tonadex::app
