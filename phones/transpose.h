#pragma once

#include <string>
#include <string_view>

// Transposes melodies.
namespace tonadex::phones {

inline constexpr int kMostSemitones = 36;  // up or down

// Transposes an RTTTL text whose sharps are "#". Name, header settings, durations, dots and pauses
// stay the same; blanks after the name are removed. Whole octaves are added to the header's "o=" if
// there is one, and a note states its octave only if it differs from the header's.
// Errors: core::RunTimeError (kInvalidArgument) for more than kMostSemitones, a text that is not a
// melody, an unreadable note, and a note that would be outside octaves 1 to 8.
std::string Transposed(std::string_view rtttl, int semitones);

}  // namespace tonadex::phones
