#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "core/text.h"

// Checks whether the parser reads an RTTTL text as it is written, and measures the melody.
namespace tonadex::phones {

enum class Verdict { kNothing, kGood, kBad };

// A fault: something that is rejected, or that the parser reads differently from how it is written.
// Strings are Windows-1252.
struct RtttlFault {
  core::TextRange where;  // in the given text; empty when something is missing there
  std::size_t note = 0;   // 1-based, including pauses; 0 for name and header
  std::string sentence;   // Spanish, with the note's number: "Nota 3: …."
};

struct MelodyCheck {
  Verdict verdict = Verdict::kNothing;  // kNothing for a blank text
  std::string sentence;                 // of the first fault, or the counts
  std::vector<RtttlFault> faults;       // the header's, then by note; at most 200
  std::string title;                    // the name without surrounding blanks
  std::size_t notes = 0, pauses = 0;    // readable ones
  double tempo = 0;                     // quarter notes per minute; 0 when it is not a number
  double seconds = 0;                   // total of the readable notes and pauses
};

// Checks a text whose sharps are "#" (the escape of stored files is a fault, because nothing
// restores it in a text box). A text without faults can be parsed, played and converted for every
// phone. Limits of a phone (number of notes, octaves) are not faults. Never throws, shows no
// message.
MelodyCheck CheckRtttl(std::string_view text);

}  // namespace tonadex::phones
