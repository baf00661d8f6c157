#pragma once

#include <string>
#include <string_view>

namespace tonadex::app {

// The proposal for a file of a melody, without extension: the row's stem, where characters that a
// file name cannot hold become "_".
std::string FileStem(std::string_view row);

// With the extension of the model's format: "vals.rtttl", "vals.txt".
std::string SuggestedFileName(std::string_view row, std::string_view model);

}  // namespace tonadex::app
