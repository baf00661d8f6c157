#pragma once

#include <cstdint>
#include <string>

#include "core/rtttl.h"

// The two text melody formats of EMS messages. Both clear `warnings` and then append
// theirs; lines end in CR LF, except the last. A melody that does not parse is reported and gives
// "". A base octave of 0 means 0 here, not a default.
// Errors: type mismatch for an octave that is not a number.
namespace tonadex::formats {

// "BEGIN:EMELODY … MELODY:Cd+#Epp … END:EMELODY": lower case is short, upper case long, "+" above
// the base octave. Dots are not written.
std::string EMelodyText(core::RTTTLMelody& melody, std::string& warnings, std::int16_t baseOctave);

// "BEGIN:IMELODY … MELODY:c3*5#d2. … END:IMELODY", folded at 75 characters; base octave to base
// octave + 3 are iMelody octaves 4 to 7, others are clamped.
std::string IMelodyText(core::RTTTLMelody& melody, std::string& warnings, std::int16_t baseOctave);

}  // namespace tonadex::formats
