#pragma once

#include <string_view>

#include "nokia3210/error_log.h"

// The octave marks and the keys of the phone's composer.
namespace tonadex::nokia3210 {

// The composer's octave mark of an RTTTL octave ("5" gives "1") and back ("1" gives "5"). "4" and
// "8", which the phone lacks, give "0" and "4" and are logged. "" for anything else.
std::string_view GetOctave(std::string_view octave, ErrorLog& log);

// The phone's key of a note: "c" gives "1", "b" gives "7", the pause "-" gives "0". Lower case
// only; "" for anything else.
std::string_view GetKey(std::string_view note);

}  // namespace tonadex::nokia3210
