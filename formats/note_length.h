#pragma once

#include <cstdint>
#include <string>
#include <string_view>

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

}  // namespace tonadex::formats
