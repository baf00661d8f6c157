#pragma once

#include <cstdint>
#include <string>

#include "core/rtttl.h"

namespace tonadex::formats {

// What the composer of a Nokia phone shows: "8#c2 4.- " (duration, dot, sharp, letter, octave 1 to
// 3; "-" is a pause), one token per note, each ended by a blank. `baseOctave` is the melody octave
// of the phone's lowest one. Findings are appended to `warnings`; more than 50 notes is one of
// them and nothing is cut. A melody that does not parse is reported and gives "".
// Errors: type mismatch for an octave that is no number.
std::string NokiaComposerText(core::RTTTLMelody& melody, std::string& warnings,
                              std::int16_t baseOctave);

}  // namespace tonadex::formats
