#pragma once

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string_view>

#include "core/rtttl.h"
#include "core/rtttl_writer.h"
#include "core/text.h"

namespace tonadex::formats {

inline constexpr int kSemitones = 12;  // per octave

using core::kPitches;
static_assert(kPitches.size() == kSemitones);

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

// Semitones above c by the letter's code, one row for naturals and one for sharps; -1 for none.
inline constexpr auto kSemitoneRows = [] {
  std::array<std::array<std::int8_t, 256>, 2> rows{};
  rows[0].fill(-1);
  rows[1].fill(-1);
  for (std::size_t i = 0; i < kPitches.size(); ++i) {
    rows[kPitches[i].size() - 1][core::Code(kPitches[i].front())] = static_cast<std::int8_t>(i);
  }
  return rows;
}();

// Semitones above c, -1 for a note that is not a pitch. The note must have a letter.
constexpr int SemitoneOf(const core::NoteCodes& note) {
  return kSemitoneRows[note.IsSharp() ? 1 : 0][core::Code(note.letter)];
}

}  // namespace tonadex::formats
