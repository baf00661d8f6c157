#pragma once

#include <string>

#include "core/rtttl.h"

namespace tonadex::formats {

// The MDY text of a Mitsubishi Trium phone, lines ended by CR LF: "NAME=x", "TEMPO=100", then "M",
// the German note name (upper case from octave 6 on, b is h; "p" is a pause), duration and dot:
// "Mc4", "MD#8.", "Mp2". The duration is the one whose length at tempo 100 comes nearest to the
// note's. A note of an unknown duration is left out with a warning in `warnings`; a note of an
// unknown pitch is left out too, and the first one shows a message box. A melody that does not
// parse is reported and gives "". Errors: type mismatch, tempo 0.
std::string TriumMdyText(core::RTTTLMelody& melody, std::string& warnings);

}  // namespace tonadex::formats
