#pragma once

#include <string>
#include <string_view>

#include "core/rtttl.h"
#include "formats/reading.h"

// Nokia Smart Messaging ringtones: the bits of a message to port 1581 (hexadecimal), as an .ott
// file and as text messages. Texts are Windows-1252.
namespace tonadex::formats {

inline constexpr std::size_t kMostTitleLetters = 15;

// The bytes of the ringtone for a parsed melody. Appends a line to `warnings` for everything that
// the format cannot hold: a title of more than 15 letters, a tempo that is not one of its 32,
// octaves other than 4 to 7, durations that phones lack (left out); and for more than one text
// message. Errors: invalid argument for a melody of more notes than four patterns of 255 hold, type
// mismatch.
std::string OttBytes(const core::RTTTLMelody& melody, std::string& warnings);

// The text messages of a ringtone, one a line: "//SCKL1581 024A3A…", for several messages with
// their reference, total and number: "//SCKL15811581000201 024A3A…". Lines end in CR LF.
std::string ScklText(std::string_view ottBytes);

// The ringtone of an .ott file. A title in Unicode and changes of tempo are read, too; patterns
// repeated for ever are read once. Errors: those of the readers, see readers.h.
Reading ReadOtt(std::string_view bytes);

// The ringtone of text messages in any order. Errors: also for a missing one.
Reading ReadSckl(std::string_view text);

}  // namespace tonadex::formats
