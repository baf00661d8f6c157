#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "core/rtttl.h"

// Kyocera KWS files.
namespace tonadex::formats {

enum class KwsResult {
  kWritten,
  kNotParsed,    // reported already
  kTooLow,       // a note lies below octave 4; nothing was written
  kWriteFailed,  // as core::WriteBytes leaves it
};

// The bytes of the file for a parsed melody, all numbers little-endian:
//   0-3     length of the whole file, every bit inverted
//   4-5     number of entries
//   6 + 4n  note, 1 is c of octave 4, +1 per semitone; 0 for a pause
//   7 + 4n  4 for a note, 0 for a pause
//   8 + 4n  duration in ms: b3 = low byte XOR (high byte x 2), b4 = high byte
// Neighbours of the same note are one entry; one of more than 65535 ms is several. A duration that
// the format does not know is appended to `warnings` and gives no entry. None when a note lies
// below octave 4. Errors: type mismatch, overflow, tempo 0.
std::optional<std::string> KwsBytes(const core::RTTTLMelody& melody, std::string& warnings);

// Parses the melody and writes the file at the path that `fileName` names. `baseOctave` makes no
// difference to the bytes. Errors: those of KwsBytes.
KwsResult WriteKws(core::RTTTLMelody& melody, std::string& warnings, std::int16_t baseOctave,
                   std::string_view fileName);

}  // namespace tonadex::formats
