#pragma once

#include <string>

#include "core/rtttl.h"

namespace tonadex::formats {

// The MDY text of a Mitsubishi Trium phone. Lines end in CR LF: "NAME=x", "TEMPO=100", then one
// line per note: "M", the German note name (upper case from octave 6 on, h for b, "p" for a pause),
// duration and dot: "Mc4", "MD#8.", "Mp2". The duration is the one whose length at tempo 100 is
// nearest to the note's. A note of unknown duration is left out with a warning in `warnings`; a
// note of unknown pitch is left out too, and the first one shows a message box. A melody that
// cannot be parsed is reported in a message box and returns "". Errors: type mismatch, division by
// zero for tempo 0.
std::string TriumMdyText(core::RTTTLMelody& melody, std::string& warnings);

}  // namespace tonadex::formats
