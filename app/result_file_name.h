#pragma once

#include <string>
#include <string_view>

namespace tonadex::app {

// The proposal for a file of a melody, without extension: the row's stem, where characters that a
// file name cannot hold become "_".
std::string FileStem(std::string_view row);

}  // namespace tonadex::app
