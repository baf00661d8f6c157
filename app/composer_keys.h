#pragma once

#include <array>
#include <cstddef>
#include <string>
#include <string_view>

// The composer's row of phone keys.
namespace tonadex::app {

struct ComposerKey {
  std::string_view label;  // on the key: "1" … "#"
  std::string_view word;   // under it: "do", "pausa", "más corta" …
  std::string_view help;   // tooltip and accessible name
};

// Keys in the order of the row: 1 to 7, 0, 8, 9, *, #.
inline constexpr std::size_t kKeyCount = 12;
const std::array<ComposerKey, kKeyCount>& ComposerKeys();

struct ComposerText {
  std::string text;
  std::size_t cursor = 0;  // characters before the cursor

  friend bool operator==(const ComposerText&, const ComposerText&) = default;
};

// What the text becomes when a key is pressed, as on the phone: 1 to 7 put a note behind the one
// at the cursor, with that one's duration and octave, 0 a pause; 8 halves and 9 doubles the
// duration of the note at the cursor, "*" takes it to the next octave (1, 2, 3, 1), "#" sharpens
// it or takes the sharp away. A held note key dots what it puts in; a held 8 or 9 acts as a short
// one. `key` is a label; any other changes nothing. Never throws.
ComposerText PressKey(const ComposerText& before, std::string_view key, bool held);

}  // namespace tonadex::app
