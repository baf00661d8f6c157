#pragma once

#include <cstdint>
#include <string_view>

#include "core/rtttl.h"

// Chooses the octave range of a melody for phones that have only a few octaves.
namespace tonadex::formats {

// The `rangeSpan` that the converters use, in octaves.
inline constexpr int kRangeSpan = 2;

// Parses the melody (errors are reported; the notes parsed before an error count) and returns the
// lowest octave of a range around the `rangeSpan` most used ones: their average minus half the
// span, rounded up. On a tie the higher octave is preferred; pauses count with their octave.
// Errors: subscript for an octave outside 0 to 10, type mismatch for one that is not a number,
// division by zero when there is no note; those of core::CheckDefaults.
std::int16_t AutoOctave(core::RTTTLMelody& melody, int rangeSpan);

// The dialog that chooses the octave range; it is never shown.
struct frmOctave {
  core::RTTTLMelody& gMelody;

  // `DefaultOctave` is accepted and ignored.
  std::int16_t mGetOctaveRange(std::string_view DefaultOctave, int RangeSpan) const;
};

}  // namespace tonadex::formats
