#include "rtf/rtf_escape.h"

namespace tonadex::rtf {

std::string Escaped(std::string_view text) {
  constexpr std::string_view kHex = "0123456789abcdef";
  std::string source;
  for (const char c : text) {
    const auto code = static_cast<unsigned char>(c);
    if (c == '\\' || c == '{' || c == '}') {
      source += '\\';
      source += c;
    } else if (c == '\n') {
      source += "\\par ";
    } else if (code >= 0x80) {
      source += "\\'";
      source += kHex[code >> 4];
      source += kHex[code & 15];
    } else {
      source += c;
    }
  }
  return source;
}

}  // namespace tonadex::rtf
