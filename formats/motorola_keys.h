#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "core/rtttl.h"

// The two ways of typing a melody into a Motorola phone. A base octave of 0 means 5; `warnings` is
// cleared, then filled. A melody that does not parse is reported and gives "".
namespace tonadex::formats {

// Letters on the keys 2, 3 and 4: "22200 " is a quarter c ("1" octave, "7" sharp, "0" duration),
// one group per note, each ended by a blank. Dots are not written. An unknown numeric duration
// is written as that many presses. Errors: type mismatch for an octave or duration that is not a
// number.
std::string MotorolaKeyPresses(core::RTTTLMelody& melody, std::string& warnings,
                               std::int16_t baseOctave);

// iMelody notes for phones that accept them as keys, at tempo 125: "*3c3*4#d2r4".
// Errors: type mismatch for an octave that is not a number, those of NoteLengthMs.
std::string MotorolaIMelodyKeys(core::RTTTLMelody& melody, std::string& warnings,
                                std::int16_t baseOctave);

}  // namespace tonadex::formats
