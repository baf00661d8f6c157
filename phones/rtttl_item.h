#pragma once

#include <array>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

// What a person means by one item of the notes section, and whether the parser reads that.
namespace tonadex::phones {

inline constexpr std::array<int, 6> kDurations = {1, 2, 4, 8, 16, 32};
inline constexpr int kLowestOctave = 1, kHighestOctave = 8;    // that the parser reads in a note
inline constexpr int kSlowestTempo = 25, kFastestTempo = 900;  // of phones; others may be refused

// Marks may stand anywhere and numbers may be out of range: "8.c9#" is all of them.
struct MeantNote {
  std::optional<int> duration;  // as written; 999 for more
  char letter = 'c';            // a to g, "p" for a pause
  int accidental = 0;           // 1 sharp, -1 flat
  bool dotted = false;
  std::optional<int> octave;

  friend bool operator==(const MeantNote&, const MeantNote&) = default;
};

// The notes of an item in lower case without blanks; several when commas are missing ("8c16d"),
// none when it cannot be understood. h is b, "r" and "-" are pauses.
std::vector<MeantNote> NotesMeant(std::string_view item);

// As the parser reads it: duration, letter, "#", ".", octave. A flat has no such form.
std::string ItemText(const MeantNote& note);

// What is wrong with an item, "" when the parser reads what is meant: a clause in Spanish without
// full stop.
std::string ItemFault(std::string_view item);

// The nearest item that phones know: duration and octave brought into range, flats, e# and b# by
// their usual name. `octave` is the header's.
std::string MendedItem(MeantNote note, int octave);

// The nearest of kDurations, of two as near the shorter note.
int NearestDuration(int duration);

// An octave out of range comes to the lowest or highest that phones play, 4 or 7.
int NearestOctave(int octave);

// Lower case, without the blanks that the parser drops.
std::string CleanItem(std::string_view item);

}  // namespace tonadex::phones
