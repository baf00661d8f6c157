#pragma once

#include <cstddef>
#include <string_view>

namespace tonadex::formats {

// The number key of a note letter on Nokia and Samsung phones, c "1" to b "7"; NUL for another.
constexpr char NoteKey(char letter) {
  constexpr std::string_view kKeys = "6712345";  // of a to g
  const auto at = static_cast<unsigned char>(letter - 'a');
  return at < kKeys.size() ? kKeys[at] : '\0';
}

}  // namespace tonadex::formats
