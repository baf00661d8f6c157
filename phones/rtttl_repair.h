#pragma once

#include <string>
#include <string_view>
#include <vector>

// Repairs pasted melodies: broken lines, misplaced marks, typographic and HTML characters, several
// melodies at once.
namespace tonadex::phones {

// Strings are Windows-1252.
struct RepairedMelody {
  std::string name;
  std::string text;  // one line of RTTTL, sharps as "#", without faults (CheckRtttl)
  std::vector<std::string> changes;  // Spanish sentences; empty for a melody without faults
};

// The melodies in a text, in order; none when it has no notes. A melody without faults whose name
// can be uploaded is unchanged, byte for byte; a note that the parser reads as written keeps its
// sound. Repairing a result changes nothing. Takes linear time, and memory of a small multiple of
// the text. Never throws, shows no message.
std::vector<RepairedMelody> RepairRtttl(std::string_view pasted);

}  // namespace tonadex::phones
