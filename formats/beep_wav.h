#pragma once

#include <string>

#include "core/rtttl.h"

namespace tonadex::formats {

// A parsed melody as the beeper of a phone plays it, a square wave: a WAV file, 22050 Hz, mono, 8
// bits. Every note fades out at its end, so that the next one of its pitch is heard. Notes of
// unknown duration or pitch are left out. Errors: type mismatch, division by zero for tempo 0,
// invalid argument for a melody of more than ten minutes.
std::string BeepWav(const core::RTTTLMelody& melody);

}  // namespace tonadex::formats
