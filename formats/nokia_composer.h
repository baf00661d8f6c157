#pragma once

#include <cstddef>
#include <cstdint>
#include <string>

#include "core/rtttl.h"

namespace tonadex::formats {

// The notation that a Nokia phone's composer displays: "8#c2 4.- " (duration, dot, sharp, letter,
// octave 1 to 3; "-" is a pause), one token per note, each followed by a blank. `baseOctave` is the
// melody octave that becomes octave 1. Appends to `warnings`; more than 50 notes cause a warning,
// but all are written. A melody that cannot be parsed is reported in a message box and returns "".
// Errors: type mismatch for an octave that is not a number.
std::string NokiaComposerText(core::RTTTLMelody& melody, std::string& warnings,
                              std::int16_t baseOctave);

// Appends one note without the blank: "8#c2". `octave` is the digit, 1 to 3.
void AppendComposerNote(const core::RTTTLNote& note, std::size_t octave, std::string& text);

}  // namespace tonadex::formats
