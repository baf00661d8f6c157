#pragma once

#include <string>
#include <string_view>

namespace tonadex::app {

// The proposal for a file of a melody: the row's stem and the extension ("vals.pdf"); characters
// that a file name cannot hold become "_".
std::string FileNameOfRow(std::string_view row, std::string_view extension);

// With the extension of the model's format: "vals.rtttl", "vals.txt".
std::string SuggestedFileName(std::string_view row, std::string_view model);

}  // namespace tonadex::app
