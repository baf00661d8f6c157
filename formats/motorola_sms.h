#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "core/rtttl.h"

namespace tonadex::formats {

// The text message that a Motorola phone accepts as a ringtone: "L35&2 C4D#+3R2&&5:", at most 35
// note tokens and two check characters. Dots are not written. `warnings` is cleared, then filled. A
// base octave of 0 means 5. A melody that cannot be parsed is reported in a message box and returns
// "". Errors: type mismatch for an octave that is not a number.
std::string MotorolaSmsText(core::RTTTLMelody& melody, std::string& warnings,
                            std::int16_t baseOctave);

// The two check characters: XOR all character codes and write the result in hexadecimal; each check
// character is '0' + digit, for the first and the last digit, so A to F become ':' to '?'.
std::string CheckCharacters(std::string_view tokens);

}  // namespace tonadex::formats
