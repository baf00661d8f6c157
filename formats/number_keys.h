#pragma once

#include <string_view>

namespace tonadex::formats {

// The number key of a note letter on Nokia and Samsung phones, "1" for c to "7" for b; NUL for any
// other character.
constexpr char NoteKey(char letter) {
  constexpr std::string_view kKeys = "6712345";  // of a to g
  const auto at = static_cast<unsigned char>(letter - 'a');
  return at < kKeys.size() ? kKeys[at] : '\0';
}

}  // namespace tonadex::formats
