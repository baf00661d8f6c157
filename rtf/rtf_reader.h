#pragma once

#include <string>
#include <string_view>

#include "rtf/rtf_document.h"

namespace tonadex::rtf {

// Whether the bytes begin with the signature of RTF.
bool LooksLikeRtf(std::string_view source);

// Reads any bytes as RTF; never fails and takes linear time, whatever the nesting. Bytes above 127
// and \'hh are Windows-1252; \u and \uc are supported. Unknown control words, \* destinations,
// pictures, headers, footers and notes are skipped. A table row becomes a paragraph with its cells
// separated by tabs.
Document ReadRtf(std::string_view source);

// The text, one line per paragraph.
std::u16string PlainText(const Document& document);

}  // namespace tonadex::rtf
