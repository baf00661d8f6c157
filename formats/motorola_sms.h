#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "core/rtttl.h"

namespace tonadex::formats {

// The text message that a Motorola phone takes as a ringtone: "L35&2 C4D#+3R2&&5:": at most 35
// note tokens and two check characters. Dots are not written. `warnings` is emptied, then filled.
// A base octave of 0 means 5. A melody that does not parse is reported and gives "".
// Errors: type mismatch for an octave that is no number.
std::string MotorolaSmsText(core::RTTTLMelody& melody, std::string& warnings,
                            std::int16_t baseOctave);

// The two check characters of the note tokens: each is the character 48 places behind NUL by the
// first and the last hexadecimal digit of the XOR of all codes (":" to "?" for A to F).
std::string CheckCharacters(std::string_view tokens);

}  // namespace tonadex::formats
