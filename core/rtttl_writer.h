#pragma once

#include <array>
#include <string>
#include <string_view>
#include <vector>

// Writes a melody whose notes are known as RTTTL text.
namespace tonadex::core {

// The pitches of an octave as RTTTL spells them.
inline constexpr std::array<std::string_view, 12> kPitches = {"c",  "c#", "d",  "d#", "e",  "f",
                                                              "f#", "g",  "g#", "a",  "a#", "b"};

// One note or pause, free of any notation.
struct PlainNote {
  int semitone = -1;    // 0 is c, 1 c#, … 11 b; -1 is a pause
  int octave = 5;       // 1 to 8, as RTTTL counts them; says nothing for a pause
  int length = 4;       // 1, 2, 4, 8, 16 or 32: the part of a whole note
  bool dotted = false;  // half as long again

  friend bool operator==(const PlainNote&, const PlainNote&) = default;
};

struct PlainMelody {
  std::string name;  // Windows-1252, as all texts
  int tempo = 63;    // quarter notes a minute
  std::vector<PlainNote> notes;
};

// "name:d=8,o=5,b=120:c,8p,…" with the default duration and octave that make the text shortest.
// Colons and line ends in the name become blanks, because the first colon ends a name; a blank name
// becomes "melodía", because a melody without a name is not read. Items are written as the parser
// reads them: the dot before the octave.
std::string RtttlText(const PlainMelody& melody);

}  // namespace tonadex::core
