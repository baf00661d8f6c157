#pragma once

#include <string>

#include "core/rtttl.h"

namespace tonadex::formats {

// The melody rewritten for tempo 125 with the same timing: "name:d=4,o=5,b=125:8c,2.d…,". A comma
// follows every note, including the last. A dotted note in a dotted band has two dots: deliberate.
// A melody that cannot be parsed is reported in a message box and returns "". Errors: those of
// NoteLengthMs (tempo 0 or not a number, a note of more than 32767 ms).
std::string RtttlAtTempo125(core::RTTTLMelody& melody);

}  // namespace tonadex::formats
