#pragma once

#include <string>
#include <string_view>
#include <vector>

// Makes RTTTL of what people paste: broken lines, marks in the wrong place, signs of word
// processors and web pages, several melodies at once.
namespace tonadex::phones {

// Texts are Windows-1252.
struct RepairedMelody {
  std::string name;
  std::string text;  // RTTTL of one line, sharps as "#", which CheckRtttl calls good
  std::vector<std::string> changes;  // Spanish sentences; empty for a melody that was good
};

// The melodies in a text, in its order; none when it holds no note. A melody that is good and whose
// name can be uploaded comes out byte for byte; a note that is read as it is written keeps its
// sound. Repairing a result changes nothing. Time is linear, memory a small multiple of the text.
// Never throws, shows nothing.
std::vector<RepairedMelody> RepairRtttl(std::string_view pasted);

// Windows-1252 text of bytes from outside (UTF-8 when they are valid, else taken as they are) in
// which signs that Windows-1252 lacks are replaced by the ones meant: "♯" by "#", full-width and
// look-alike letters by ASCII, blanks of any width by a blank.
std::string FromPasted(std::string_view bytes);

}  // namespace tonadex::phones
