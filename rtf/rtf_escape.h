#pragma once

#include <string>
#include <string_view>

namespace tonadex::rtf {

// Escapes Windows-1252 text for RTF source; LF becomes the end of a paragraph.
std::string Escaped(std::string_view text);

}  // namespace tonadex::rtf
