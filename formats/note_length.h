#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <string_view>

#include "core/rtttl.h"

// Durations of notes.
namespace tonadex::formats {

// Parses the header's tempo, quarter notes per minute. Errors: type mismatch for a text that is not
// a number, division by zero for 0 and for "".
double ToTempo(std::string_view beats);

// A whole note at tempo 1, in milliseconds: four quarter notes of a minute each.
inline constexpr double kWholeNoteMs = 240000;

// Exact length in milliseconds of a note of 1/duration, x 1.5 when dotted.
double ExactNoteLengthMs(double duration, double tempo, bool dotted);

// Whether the number is one of the durations that phones know: 1, 2, 4, 8, 16, 32.
bool IsPhoneDuration(double duration);

// Length in whole milliseconds (half to even) by the table of lengths at tempo 125, where a
// thirty-second lasts 63 ms. An unknown duration gives 0, whatever the tempo.
// Errors: those of ToTempo, overflow beyond 16 bits. ("4", "100", true) gives 938.
std::int16_t NoteLengthMs(std::string_view duration, std::string_view tempo, bool dotted);

// The duration whose band at tempo 125 contains the length. For a dotted band "." is appended to
// `noteText`, the note's pitch.
std::string_view DurationForLength(std::int16_t lengthMs, std::string& noteText);

// The texts of the phones' durations, by NoteCodes::length.
inline constexpr std::array<std::string_view, core::kLengths.size()> kDurationTexts = {
    "1", "2", "4", "8", "16", "32"};

// A duration at tempo 125 and the lengths that it stands for.
struct Band {
  std::int16_t upToMs;  // inclusive; from the end of the band before
  std::uint8_t length;  // as NoteCodes::length
  bool dotted;
};

// The band of a note of a melody, as DurationForLength(NoteLengthMs(…)) finds it, with its errors.
// Each of a melody's few lengths is computed once, when a note first needs it.
class Tempo125Bands {
 public:
  explicit Tempo125Bands(std::string_view tempo) : tempo_(tempo) {}
  const Band& operator[](const core::NoteCodes& note);

 private:
  std::string_view tempo_;
  std::array<std::array<const Band*, 2>, core::NoteCodes::kNoLength + 1> bands_{};
};

}  // namespace tonadex::formats
