#pragma once

#include <cstdint>
#include <string>

#include "core/rtttl.h"

namespace tonadex::formats {

// The keys to press in the composer of a Nokia phone, one group per note, each followed by a blank:
// "1 18 (3)* 0 " (1 to 7 are notes, 0 a pause, 8 shorter, 9 longer, # sharp, * next octave; a key
// in parentheses is held, which dots the note). `baseOctave` is the melody octave of the phone's
// lowest one. Instructions and warnings are appended to `warnings`; all notes are written. A melody
// that cannot be parsed is reported in a message box and returns "". Errors: type mismatch for an
// octave that is not a number.
std::string NokiaKeyPresses(core::RTTTLMelody& melody, std::string& warnings,
                            std::int16_t baseOctave);

}  // namespace tonadex::formats
