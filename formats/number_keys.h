#pragma once

#include <cstddef>
#include <string_view>

namespace tonadex::formats {

// The number key of a note letter on Nokia and Samsung phones, c "1" to b "7"; NUL for another.
constexpr char NoteKey(char letter) {
  constexpr std::string_view kLetters = "cdefgab";
  const std::size_t at = kLetters.find(letter);
  return at == std::string_view::npos ? '\0' : static_cast<char>('1' + at);
}

}  // namespace tonadex::formats
