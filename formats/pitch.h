#pragma once

#include <algorithm>
#include <array>
#include <optional>
#include <string_view>

namespace tonadex::formats {

inline constexpr int kSemitones = 12;  // of an octave

// The pitches of an octave, c first, as the parser writes them.
inline constexpr std::array<std::string_view, kSemitones> kPitches = {
    "c", "c#", "d", "d#", "e", "f", "f#", "g", "g#", "a", "a#", "b"};

// The same in the words of Spanish musicians.
inline constexpr std::array<std::string_view, kSemitones> kSpanishPitches = {
    "do", "do#", "re", "re#", "mi", "fa", "fa#", "sol", "sol#", "la", "la#", "si"};

// Semitones above c; none for a text that is no pitch.
constexpr std::optional<int> Semitone(std::string_view pitch) {
  const auto found = std::ranges::find(kPitches, pitch);
  if (found == kPitches.end()) {
    return std::nullopt;
  }
  return static_cast<int>(found - kPitches.begin());
}

}  // namespace tonadex::formats
