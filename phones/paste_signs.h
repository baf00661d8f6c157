#pragma once

#include <string>
#include <string_view>

// The characters of pasted texts.
namespace tonadex::phones {

// Converts bytes of unknown encoding to Windows-1252: UTF-8 when valid, else Windows-1252.
// Characters that Windows-1252 lacks are replaced by those meant: "♯" by "#", full-width and
// look-alike letters by ASCII, blanks of any width by a blank. Of UTF-16 with its byte order mark
// the characters of Latin-1 are kept; its zero bytes may remain, and PlainSigns removes them.
std::string FromPasted(std::string_view bytes);

// Normalises a pasted Windows-1252 text: lines end in LF, and typographic characters, HTML entities
// and tags, percent escapes and the escape of "#" are replaced by the characters that they mean.
// Plain text is unchanged.
std::string PlainSigns(std::string_view text);

}  // namespace tonadex::phones
