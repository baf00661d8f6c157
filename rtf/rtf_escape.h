#pragma once

#include <string>
#include <string_view>

namespace tonadex::rtf {

// A Windows-1252 text as it stands in a rich text's source; a line end (LF) ends a paragraph.
std::string Escaped(std::string_view text);

}  // namespace tonadex::rtf
