#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "formats/reading.h"

// What a person means by one item of the notes section, and whether the parser reads it so. Texts
// are Windows-1252.
namespace tonadex::phones {

inline constexpr int kLowestOctave = 1, kHighestOctave = 8;  // in a note, as parsed
using formats::kFastestTempo, formats::kSlowestTempo;

// A note as meant. In an item marks may be anywhere and numbers out of range, as in "8.c9#".
struct MeantNote {
  std::optional<int> duration;  // as written, at most 999
  char letter = 'c';            // a to g, "p" for a pause
  int accidental = 0;           // 1 sharp, -1 flat
  bool dotted = false;
  std::optional<int> octave;

  friend bool operator==(const MeantNote&, const MeantNote&) = default;
};

// The notes of an item (lower case, no blanks): several when commas are missing ("8c16d"), none
// when it cannot be understood. h is b; "r" and "-" are pauses.
std::vector<MeantNote> NotesMeant(std::string_view item);

// The item as the parser reads it: duration, letter, "#", ".", octave. A flat cannot be written so.
std::string ItemText(const MeantNote& note);

// The fault of an item as a Spanish clause without a full stop; "" when the parser reads what is
// meant.
std::string ItemFault(std::string_view item);

// The nearest item that phones know: duration and octave in range, flats, e# and b# replaced by the
// usual name of their pitch. `octave` is the header's.
std::string MendedItem(MeantNote note, int octave);

// The nearest duration of a phone; on a tie the shorter note.
int NearestDuration(int duration);

// The octave, or for one out of range the lowest or highest that phones play, 4 or 7.
int NearestOctave(int octave);

// The text in «», at most `most` characters of it and then "…".
std::string Quoted(std::string_view text, std::size_t most = 24);

// The item in lower case, without the blanks that the parser removes.
std::string CleanItem(std::string_view item);

}  // namespace tonadex::phones
