#pragma once

#include <cstdint>
#include <string_view>

#include "core/rtttl.h"

// Which octaves of a melody a phone with few of them should play.
namespace tonadex::nokia3210 {

// The span that the converters ask for.
inline constexpr int kRangeSpan = 2;

// Parses the melody (errors are reported and what was parsed counts) and gives the lowest octave of
// a range placed around the `rangeSpan` most used ones: their average less half the span, rounded
// up. Of octaves used equally often the higher one counts first; pauses count with their octave.
// Errors: subscript for an octave outside 0 to 10, type mismatch for one that is no number,
// division by zero when nothing counts; those of core::CheckDefaults.
std::int16_t AutoOctave(core::RTTTLMelody& melody, int rangeSpan);

// The octave choice of the converters; its window is never shown.
struct frmOctave {
  core::RTTTLMelody& gMelody;

  // `DefaultOctave` is accepted and ignored.
  std::int16_t mGetOctaveRange(std::string_view DefaultOctave, int RangeSpan) const;
};

}  // namespace tonadex::nokia3210
