#include "formats/trium_mdy.h"

#include <algorithm>
#include <array>
#include <cmath>

#include "core/message_box.h"
#include "formats/note_length.h"
#include "formats/note_warning.h"
#include "formats/pieces.h"
#include "formats/pitch.h"

namespace tonadex::formats {
namespace {

constexpr double kFirstHighOctave = 6;  // upper case from this octave on

// German note names by semitone.
constexpr std::array<std::string_view, kSemitones> kNames = {"c",  "c#", "d",  "d#", "e",  "f",
                                                             "f#", "g",  "g#", "a",  "a#", "h"};

constexpr Piece kPause = "p";

// The names in lower case, then in upper case.
constexpr auto kNamePieces = [] {
  std::array<std::array<Piece, kSemitones>, 2> names;
  for (std::size_t i = 0; i < kNames.size(); ++i) {
    names[0][i] = names[1][i] = kNames[i];
    names[1][i].characters[0] = static_cast<char>(kNames[i].front() - 'a' + 'A');
  }
  return names;
}();

struct Length {
  double ms;    // at tempo 100, where a whole note lasts 2400 ms
  Piece piece;  // with the line end
};

// Shortest first: on a tie the shorter length is chosen.
constexpr std::array kLengths = std::to_array<Length>({
    {75, "32\r\n"},
    {112.5, "32.\r\n"},
    {150, "16\r\n"},
    {225, "16.\r\n"},
    {300, "8\r\n"},
    {450, "8.\r\n"},
    {600, "4\r\n"},
    {900, "4.\r\n"},
    {1200, "2\r\n"},
    {1800, "2.\r\n"},
    {2400, "1\r\n"},
    {3600, "1.\r\n"},
});
static_assert(std::ranges::is_sorted(kLengths, {}, &Length::ms));

constexpr std::size_t kMostCharacters = 8;  // longest line, "Mc#32.", CR, LF

const Piece& NearestLength(double ms) {
  return std::ranges::min_element(kLengths, {},
                                  [ms](const Length& length) { return std::abs(ms - length.ms); })
      ->piece;
}

// The nearest length of each duration, plain and dotted, computed on first use: an invalid tempo is
// an error only for a melody with notes.
class NearestLengths {
 public:
  explicit NearestLengths(std::string_view tempo) : tempo_(tempo) {}

  // `length` is a phone's duration, as NoteCodes::length.
  const Piece& operator()(std::uint8_t length, bool dotted) {
    const Piece*& nearest = nearest_[length][dotted ? 1 : 0];
    if (nearest == nullptr) {
      nearest = &NearestLength(ExactNoteLengthMs(core::kLengths[length], ToTempo(tempo_), dotted));
    }
    return *nearest;
  }

 private:
  std::string_view tempo_;
  std::array<std::array<const Piece*, 2>, core::kLengths.size()> nearest_{};
};

void ReportUnplaced(std::string_view pitch, std::string_view melodyName) {
  core::MsgBox("Kann nicht konvertieren!\r\n" + std::string(pitch) +
                   " Bereiche: c bis H\r\nDatei:     " + std::string(melodyName),
               core::Icon::kExclamation);
}

}  // namespace

std::string TriumMdyText(core::RTTTLMelody& melody, std::string& warnings) {
  if (!core::ParseOrReport(melody)) {
    return {};
  }
  std::string text = "NAME=" + melody.Name + "\r\nTEMPO=100\r\n";
  PieceWriter lines(text, melody.Notes.size() * kMostCharacters);
  NearestLengths lengths(melody.Beats);
  bool reported = false;
  std::size_t number = 0;
  for (const core::NoteCodes& note : melody.Notes.Codes()) {
    ++number;
    melody.Notes.Duration(note);  // throws for a duration that is not a number
    const std::uint8_t length = core::kLengthOf[note.duration];
    if (length == core::NoteCodes::kNoLength) {
      AppendNoteWarning(warnings, "La nota # ", number, kBadDuration);
    }
    const bool pause = core::IsPause(note);
    const int semitone = SemitoneOf(note);
    if (!pause && semitone < 0 && !reported) {
      ReportUnplaced(melody.Notes[number - 1].Note, melody.Name);
      reported = true;
    }
    if (length == core::NoteCodes::kNoLength || (!pause && semitone < 0)) {
      continue;
    }
    const bool high = !pause && melody.Notes.Octave(note) >= kFirstHighOctave;
    lines.Put('M');
    lines.Put(pause ? kPause : kNamePieces[high ? 1 : 0][static_cast<std::size_t>(semitone)]);
    lines.Put(lengths(length, note.dotted));
  }
  lines.End(text);
  return text;
}

}  // namespace tonadex::formats
