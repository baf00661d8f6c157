#pragma once

#include <cstddef>
#include <cstdint>
#include <string>

#include "core/rtttl.h"

namespace tonadex::formats {

// The display of a Nokia phone's composer: "8#c2 4.- " (duration, dot, sharp, letter, octave 1 to
// 3; "-" is a pause), one token per note, each ended by a blank. `baseOctave` is the melody octave
// of the phone's lowest one. Appends to `warnings`, also for more than 50 notes, which are all
// written. A melody that does not parse is reported and gives "".
// Errors: type mismatch for an octave that is not a number.
std::string NokiaComposerText(core::RTTTLMelody& melody, std::string& warnings,
                              std::int16_t baseOctave);

// Appends one note without the blank: "8#c2". `octave` is the digit.
void AppendComposerNote(const core::RTTTLNote& note, std::size_t octave, std::string& text);

}  // namespace tonadex::formats
