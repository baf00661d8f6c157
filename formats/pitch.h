#pragma once

#include <algorithm>
#include <array>
#include <optional>
#include <string_view>

namespace tonadex::formats {

inline constexpr int kSemitones = 12;  // of an octave

// The pitches of an octave as RTTTLNote::Note spells them.
inline constexpr std::array<std::string_view, kSemitones> kPitches = {
    "c", "c#", "d", "d#", "e", "f", "f#", "g", "g#", "a", "a#", "b"};

// Their Spanish names.
inline constexpr std::array<std::string_view, kSemitones> kSpanishPitches = {
    "do", "do#", "re", "re#", "mi", "fa", "fa#", "sol", "sol#", "la", "la#", "si"};

// Semitones above c; nullopt for a text that is not a pitch.
constexpr std::optional<int> Semitone(std::string_view pitch) {
  const auto found = std::ranges::find(kPitches, pitch);
  if (found == kPitches.end()) {
    return std::nullopt;
  }
  return static_cast<int>(found - kPitches.begin());
}

}  // namespace tonadex::formats
