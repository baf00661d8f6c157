#pragma once

#include <string>
#include <string_view>

// Moving a melody up or down.
namespace tonadex::phones {

inline constexpr int kMostSemitones = 36;  // either way

// An RTTTL text whose sharps are "#", moved by whole semitones: the same name, header settings,
// durations, dots and pauses, without blanks behind the name. Whole octaves go into the header's
// "o=", where it has one; a note names its octave where that is another. Errors:
// core::RunTimeError (kInvalidArgument) for more than kMostSemitones, a text that is no melody, a
// note that cannot be read, and a note that would leave the octaves that a note can have (1 to 8).
std::string Transposed(std::string_view rtttl, int semitones);

}  // namespace tonadex::phones
