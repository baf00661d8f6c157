#pragma once

#include <optional>
#include <string>

#include "core/rtttl.h"

// Writer of Kyocera KWS files.
namespace tonadex::formats {

// The bytes of the file for a parsed melody; all numbers are little-endian:
//   0-3     length of the whole file, every bit inverted
//   4-5     number of entries
//   6 + 4n  note, 1 is c of octave 4, +1 per semitone; 0 for a pause
//   7 + 4n  4 for a note, 0 for a pause
//   8 + 4n  duration in ms: b3 = low byte XOR (high byte x 2), b4 = high byte
// Successive equal notes are merged into one entry; an entry of more than 65535 ms is split. A note
// of unknown duration is left out with a warning in `warnings`. nullopt when a note is below octave
// 4. Errors: type mismatch, overflow, division by zero for tempo 0.
std::optional<std::string> KwsBytes(const core::RTTTLMelody& melody, std::string& warnings);

}  // namespace tonadex::formats
