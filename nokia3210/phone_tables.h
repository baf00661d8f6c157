#pragma once

#include <string_view>

#include "nokia3210/error_log.h"

// The octave marks of the phone's composer.
namespace tonadex::nokia3210 {

// The composer's octave mark for an RTTTL octave ("1" for "5") or the reverse ("5" for "1"). "4"
// and "8", which the phone lacks, return "0" and "4" and are logged. "" for anything else.
std::string_view GetOctave(std::string_view octave, ErrorLog& log);

}  // namespace tonadex::nokia3210
