#pragma once

#include <string_view>

#include "nokia3210/error_log.h"

// The octave marks and the keys of the phone's composer.
namespace tonadex::nokia3210 {

// The composer's octave mark for an RTTTL octave ("1" for "5") or the reverse ("5" for "1"). "4"
// and "8", which the phone lacks, return "0" and "4" and are logged. "" for anything else.
std::string_view GetOctave(std::string_view octave, ErrorLog& log);

// The phone's key for a note: "1" for "c" to "7" for "b", "0" for the pause "-". Lower case only;
// "" for anything else.
std::string_view GetKey(std::string_view note);

}  // namespace tonadex::nokia3210
