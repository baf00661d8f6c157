#pragma once

#include <string>
#include <string_view>

namespace tonadex::phones {

// A pasted Windows-1252 text with the signs of RTTTL: lines end in LF, typographic signs, HTML
// entities and tags, percent escapes and the escape of "#" are replaced by what they stand for.
// Plain text comes out as it is.
std::string PlainSigns(std::string_view text);

}  // namespace tonadex::phones
