#pragma once

#include <cstdint>

#include "core/number.h"
#include "core/rtttl.h"

namespace tonadex::formats {

// The base octave to write with: `given`, or the phone's default `phones` when `given` is 0.
constexpr std::int16_t BaseOctave(std::int16_t given, std::int16_t phones) {
  return given == 0 ? phones : given;
}

// Folds the note's octave onto a phone's three: 0 below the middle one (base + 1), 1 equal to it,
// 2 above. Errors: type mismatch for an octave that is not a number.
inline int OctaveBand(const core::RTTTLNote& note, std::int16_t baseOctave) {
  const double octave = core::ToNumber(note.Octave);
  const int middle = baseOctave + 1;
  return octave < middle ? 0 : octave == middle ? 1 : 2;
}

}  // namespace tonadex::formats
