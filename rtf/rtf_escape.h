#pragma once

#include <string>
#include <string_view>

namespace tonadex::rtf {

// Windows-1252 text escaped for a rich-text source; LF becomes the end of a paragraph.
std::string Escaped(std::string_view text);

}  // namespace tonadex::rtf
