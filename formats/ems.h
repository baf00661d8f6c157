#pragma once

#include <cstdint>
#include <string>

#include "core/rtttl.h"

// The two text melody formats of EMS messages. Both functions clear `warnings`, then append to it.
// Lines end in CR LF, except the last. A melody that cannot be parsed is reported in a message box
// and returns "". A base octave of 0 means octave 0, not a default. Errors: type mismatch for an
// octave that is not a number.
namespace tonadex::formats {

// "BEGIN:EMELODY … MELODY:Cd+#Epp … END:EMELODY": a lower-case letter is a short note, an
// upper-case one a long note, "+" means above the base octave. Dots are not written.
std::string EMelodyText(core::RTTTLMelody& melody, std::string& warnings, std::int16_t baseOctave);

// "BEGIN:IMELODY … MELODY:c3*5#d2. … END:IMELODY", folded at 75 characters. Base octave to base
// octave + 3 become iMelody octaves 4 to 7; other octaves are clamped.
std::string IMelodyText(core::RTTTLMelody& melody, std::string& warnings, std::int16_t baseOctave);

}  // namespace tonadex::formats
