#pragma once

#include <cstdint>

#include "core/number.h"
#include "core/rtttl.h"

namespace tonadex::formats {

// The base octave to write with: the one given, or `phones` where none is (0).
constexpr std::int16_t BaseOctave(std::int16_t given, std::int16_t phones) {
  return given == 0 ? phones : given;
}

// Where an octave lies against the middle one of a phone's three: 0 below, 1 equal, 2 above.
// Octaves further away fold onto the outer ones. Errors: type mismatch for an octave text that is
// no number.
inline int OctaveBand(const core::RTTTLNote& note, std::int16_t baseOctave) {
  const double octave = core::ToNumber(note.Octave);
  const int middle = baseOctave + 1;
  return octave < middle ? 0 : octave == middle ? 1 : 2;
}

}  // namespace tonadex::formats
