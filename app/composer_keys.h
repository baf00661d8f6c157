#pragma once

#include <array>
#include <cstddef>
#include <string>
#include <string_view>

// The row of phone keys below the composer.
namespace tonadex::app {

struct ComposerKey {
  std::string_view label;  // on the key: "1" … "#"
  std::string_view word;   // under it: "do", "pausa", "más corta" …
  std::string_view help;   // tooltip and accessible name
};

// Keys in the order of the row: 1 to 7, 0, 8, 9, *, #.
inline constexpr std::size_t kKeyCount = 12;
const std::array<ComposerKey, kKeyCount>& ComposerKeys();
// Behind them, a key that locks: while it is down, the others count as held.
inline constexpr ComposerKey kHoldKey = {"( )", "mantener", "Mantener pulsada"};

struct ComposerText {
  std::string text;
  std::size_t cursor = 0;  // characters before the cursor

  friend bool operator==(const ComposerText&, const ComposerText&) = default;
};

// The text after a key press, as on the phone: 1 to 7 insert a note after the one at the cursor,
// with the same duration and octave, 0 inserts a pause; 8 halves and 9 doubles the duration of the
// note at the cursor, "*" moves it to the next octave (1, 2, 3, 1), "#" adds or removes the sharp.
// Holding a note key inserts a dotted note; any other key does the same held as pressed. `key` is a
// label; other texts do nothing. Never throws.
ComposerText PressKey(const ComposerText& before, std::string_view key, bool held);

}  // namespace tonadex::app
