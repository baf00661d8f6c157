#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "core/text.h"

// What the program makes of an RTTTL text: whether it is read as it is written, and how long it is.
namespace tonadex::phones {

enum class Verdict { kNothing, kGood, kBad };

// One thing that is refused, or read otherwise than it is written. Texts are Windows-1252.
struct RtttlFault {
  core::TextRange where;  // in the text as given; empty where something is missing
  std::size_t note = 0;   // 1-based, pauses count; 0 for name and header
  std::string sentence;   // Spanish, with the note's number: "Nota 3: …."
};

struct MelodyCheck {
  Verdict verdict = Verdict::kNothing;  // kNothing for a text of blanks
  std::string sentence;                 // the first fault's, or what was counted
  std::vector<RtttlFault> faults;       // by note, those of the header first; at most 200
  std::string title;                    // the name without surrounding blanks
  std::size_t notes = 0, pauses = 0;    // that can be read
  double tempo = 0;                     // quarter notes per minute; 0 when it is no number
  double seconds = 0;                   // of the notes and pauses that can be read
};

// Checks a text whose sharps are "#" (the escape of stored files is a fault: nothing restores it in
// a text box). A good text is parsed, played and converted for every phone as it is written; what a
// phone cannot hold (number of notes, octaves) is the phone's affair and no fault. Never throws,
// shows nothing.
MelodyCheck CheckRtttl(std::string_view text);

}  // namespace tonadex::phones
