#pragma once

#include <string>
#include <string_view>

#include "rtf/rtf_document.h"

namespace tonadex::rtf {

// Whether the bytes have the signature of a rich-text file.
bool LooksLikeRtf(std::string_view source);

// Reads any bytes as rich text; never fails and takes linear time, whatever the nesting. Bytes
// above 127 and \'hh are Windows-1252; \u and \uc are supported. Unknown control words are skipped,
// and so are \* destinations, pictures, headers, footers and notes. A table row becomes a
// paragraph, its cells separated by tabs.
Document ReadRtf(std::string_view source);

// All the text, one line for each paragraph.
std::u16string PlainText(const Document& document);

}  // namespace tonadex::rtf
