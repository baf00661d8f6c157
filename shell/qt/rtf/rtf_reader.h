#pragma once

#include <string>
#include <string_view>

#include "shell/qt/rtf/rtf_document.h"

namespace tonadex::shell::rtf {

// Whether the bytes begin as a rich-text file does.
bool LooksLikeRtf(std::string_view source);

// Reads any bytes as rich text and gives what could be read; it never fails and takes time in
// proportion to the length, whatever the nesting. Bytes above 127 and \'hh are Windows-1252; \u is
// taken with \uc. Words that it does not know are skipped, and so are \* destinations, pictures,
// headers, footers and notes. Table cells come as text parted by tabs, a row as a paragraph.
Document ReadRtf(std::string_view source);

// All the text, one line for each paragraph: for searching and for tests.
std::u16string PlainText(const Document& document);

}  // namespace tonadex::shell::rtf
