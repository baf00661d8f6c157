#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <string_view>

#include "core/rtttl.h"

// Note lengths in milliseconds, and the durations for them.
namespace tonadex::formats {

// The tempo of a header value, in quarter notes per minute. Errors: type mismatch for a text that
// is not a number, division by zero for 0 and for "".
double ToTempo(std::string_view beats);

// Length of a whole note at tempo 1: four quarter notes of one minute each.
inline constexpr double kWholeNoteMs = 240000;

// Exact length in milliseconds of a note of 1/duration, times 1.5 when dotted.
double ExactNoteLengthMs(double duration, double tempo, bool dotted);

// Whether the number is one of the durations that phones have: 1, 2, 4, 8, 16, 32.
bool IsPhoneDuration(double duration);

// Length in whole milliseconds (half to even), scaled from the table for tempo 125, in which a
// thirty-second lasts 63 ms. 0 for an unknown duration at any tempo. Example: ("4", "100", true)
// returns 938. Errors: those of ToTempo, overflow beyond 16 bits.
std::int16_t NoteLengthMs(std::string_view duration, std::string_view tempo, bool dotted);

// The duration whose band at tempo 125 contains the length. For a dotted band "." is appended to
// `noteText`, the note's pitch.
std::string_view DurationForLength(std::int16_t lengthMs, std::string& noteText);

// The phones' durations as strings, indexed by NoteCodes::length.
inline constexpr std::array<std::string_view, core::kLengths.size()> kDurationTexts = {
    "1", "2", "4", "8", "16", "32"};

// A duration at tempo 125 and the range of lengths that are written as it.
struct Band {
  std::int16_t upToMs;  // inclusive; the band begins after the previous one
  std::uint8_t length;  // as NoteCodes::length
  bool dotted;
};

// The band of a note, as DurationForLength(NoteLengthMs(…)) would find it, with the same errors.
// Each of a melody's few different lengths is computed once, on first use.
class Tempo125Bands {
 public:
  explicit Tempo125Bands(std::string_view tempo) : tempo_(tempo) {}
  const Band& operator[](const core::NoteCodes& note);

 private:
  std::string_view tempo_;
  std::array<std::array<const Band*, 2>, core::NoteCodes::kNoLength + 1> bands_{};
};

}  // namespace tonadex::formats
