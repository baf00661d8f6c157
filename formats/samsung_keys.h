#pragma once

#include <cstdint>
#include <string>

#include "core/rtttl.h"

// The keys to press in the composers of Samsung phones, one group per note, each followed by a
// blank. Warnings are appended to `warnings`; all notes are written. A base octave of 0 means 4. A
// melody that cannot be parsed is reported in a message box and returns "". Errors: type mismatch
// for an octave that is not a number.
namespace tonadex::formats {

// "2#8**** " is an eighth d sharp in the highest octave: note, "#", octave ("88" low, "8" high),
// "*" duration; "0" is a pause. A dot is written as a rest after the note.
std::string SamsungKeyPresses1(core::RTTTLMelody& melody, std::string& warnings,
                               std::int16_t baseOctave);

// "2^8< ": note, "^" sharp, octave, "<" duration; only ">" is a pause. Dots are not written.
std::string SamsungKeyPresses2(core::RTTTLMelody& melody, std::string& warnings,
                               std::int16_t baseOctave);

}  // namespace tonadex::formats
