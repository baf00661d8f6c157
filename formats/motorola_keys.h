#pragma once

#include <cstdint>
#include <string>

#include "core/rtttl.h"

// The two ways of typing a melody into a Motorola phone. A base octave of 0 means 5; `warnings` is
// cleared, then filled. A melody that cannot be parsed is reported in a message box and returns "".
namespace tonadex::formats {

// Letters on the keys 2, 3 and 4: "22200 " is a quarter c ("1" octave, "7" sharp, "0" duration).
// One group per note, each followed by a blank. Dots are not written. An unknown duration is
// written as that number of presses. Errors: type mismatch for an octave or duration that is not a
// number.
std::string MotorolaKeyPresses(core::RTTTLMelody& melody, std::string& warnings,
                               std::int16_t baseOctave);

// iMelody notes at tempo 125, for phones that accept them as keys: "*3c3*4#d2r4". Errors: type
// mismatch for an octave that is not a number; those of NoteLengthMs.
std::string MotorolaIMelodyKeys(core::RTTTLMelody& melody, std::string& warnings,
                                std::int16_t baseOctave);

}  // namespace tonadex::formats
