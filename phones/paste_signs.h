#pragma once

#include <string>
#include <string_view>

namespace tonadex::phones {

// Normalises a pasted Windows-1252 text: lines end in LF, and typographic characters, HTML entities
// and tags, percent escapes and the escape of "#" are replaced by the characters that they mean.
// Plain text is unchanged.
std::string PlainSigns(std::string_view text);

}  // namespace tonadex::phones
