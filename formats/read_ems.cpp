#include <optional>

#include "core/text.h"
#include "core/windows1252.h"
#include "formats/readers.h"

namespace tonadex::formats {
namespace {

using namespace core::literals;

constexpr int kIMelodyTempo = 120;  // of a melody without a BEAT
constexpr int kEMelodyOctave = 5;
constexpr int kLongestLength = 5;  // digit of a thirty-second

constexpr std::string_view kNoEnd = u8"El fichero no tiene final: puede faltar música."_w;

// These words are skipped wherever a note is allowed.
constexpr std::string_view kCommands[] = {"ledon",   "ledoff", "vibeon",
                                          "vibeoff", "backon", "backoff"};

// Returns the RTTTL octave for an octave digit, or for kNoMark.
using OctaveOf = int (*)(int digit);
constexpr int kNoMark = -1;

int IMelodyOctave(int digit) {
  return (digit == kNoMark ? 4 : digit) + 1;
}

// The writer's lowest three octaves are 3 to 5; the one above them is written as it is.
int KeysOctave(int digit) {
  return digit == kNoMark ? 5 : digit <= 5 ? digit + 2 : digit;
}

bool EndsAt(Scanner& in, Reading& reading) {
  const bool end = in.TakeWord("end:");
  if (!end && in.AtEnd()) {
    reading.Remark(kNoEnd);
    return true;
  }
  return end;
}

class IMelodyNotes {
 public:
  IMelodyNotes(Scanner& in, Reading& reading, OctaveOf octaveOf)
      : in_(in), reading_(reading), line_(reading), octaveOf_(octaveOf) {}

  // One command, note, pause or bracket.
  void ReadOne() {
    if (in_.Take('(')) {
      if (repeated_) {
        in_.Fail();
      }
      repeated_ = reading_.melody.notes.size();
    } else if (in_.Take('@')) {
      Repeat();
    } else if (!SkipCommand()) {
      ReadNote();
    }
  }

  bool InBracket() const { return repeated_.has_value(); }

 private:
  void Repeat() {
    const std::optional<int> times = in_.Number();
    if (!times || !repeated_ || !in_.Take(')')) {
      in_.Fail();
    }
    if (*times == 0) {
      reading_.RemarkEndless();
    }
    auto& notes = reading_.melody.notes;
    const std::size_t start = *repeated_, size = notes.size() - start;
    repeated_.reset();
    for (int i = 1; i < *times && size > 0; ++i) {
      if (notes.size() + size > kMostNotes) {
        RefuseTooLong();
      }
      for (std::size_t note = start; note < start + size; ++note) {
        notes.push_back(core::PlainNote(notes[note]));
      }
    }
  }

  bool SkipCommand() {
    if (in_.TakeWord("v")) {
      if (in_.TakeWord("ibeon") || in_.TakeWord("ibeoff") || in_.Take('+') || in_.Take('-') ||
          in_.Number()) {
        return true;
      }
      in_.Fail();
    }
    for (const std::string_view command : kCommands) {
      if (in_.TakeWord(command)) {
        return true;
      }
    }
    return false;
  }

  int ReadDigit(int most) {
    const char c = in_.Peek();
    if (!core::IsDigit(c) || c - '0' > most) {
      in_.Fail();
    }
    in_.Next();
    return c - '0';
  }

  void ReadNote() {
    core::PlainNote pitch = kPause;
    if (!in_.TakeWord("r")) {
      const int octave = octaveOf_(in_.Take('*') ? ReadDigit(8) : kNoMark);
      const int accidental = in_.Take('#') ? 1 : in_.Take('&') ? -1 : 0;
      const std::optional<int> natural = SemitoneOfLetter(core::ToLower(in_.Peek()));
      if (!natural) {
        in_.Fail();
      }
      in_.Next();
      pitch = Pitch(*natural + accidental, octave, reading_);
    }
    const double length = kWhole / (1 << ReadDigit(kLongestLength));
    line_.Add(pitch, Modified(length, in_.Take('.')   ? Modifier::kDotted
                                      : in_.Take(':') ? Modifier::kDoubleDotted
                                      : in_.Take(';') ? Modifier::kTwoThirds
                                                      : Modifier::kNone));
  }

  Scanner& in_;
  Reading& reading_;
  NoteLine line_;
  OctaveOf octaveOf_;
  std::optional<std::size_t> repeated_;  // index of the bracket's first note
};

// Where the notes begin, after "MELODY:".
std::size_t NotesOf(std::string_view text) {
  const std::size_t at = BehindKey(text, "MELODY:");
  if (at == std::string_view::npos) {
    RefuseFile({u8"falta la línea «MELODY:»"_w});
  }
  return at;
}

}  // namespace

Reading ReadIMelody(std::string_view text) {
  Reading reading;
  reading.melody.name = HeaderValue(text, "NAME:");
  reading.SetTempo(HeaderValue(text, "BEAT:"), kIMelodyTempo);
  Scanner in(text, NotesOf(text));
  IMelodyNotes notes(in, reading, IMelodyOctave);
  while (!EndsAt(in, reading)) {
    notes.ReadOne();
  }
  if (notes.InBracket()) {
    RefuseFile({u8"falta el final de una repetición, «@n)»"_w});
  }
  return reading;
}

Reading ReadIMelodyKeys(std::string_view text) {
  Reading reading;
  reading.melody.tempo = kAssumedTempo;
  Scanner in(text);
  IMelodyNotes notes(in, reading, KeysOctave);
  while (!in.AtEnd()) {
    notes.ReadOne();
  }
  return reading;
}

Reading ReadEMelody(std::string_view text) {
  Reading reading;
  reading.melody.name = HeaderValue(text, "NAME:");
  reading.SetTempo({}, kAssumedTempo);
  NoteLine line(reading);
  Scanner in(text, NotesOf(text));
  while (!EndsAt(in, reading)) {
    int octave = kEMelodyOctave;
    while (in.Take('+')) {
      ++octave;
    }
    const int accidental = in.Take('#') ? 1 : in.TakeWord("(b)") ? -1 : 0;
    const char letter = in.Peek();
    const std::optional<int> natural = SemitoneOfLetter(core::ToLower(letter));
    const bool pause = letter == 'p' || letter == 'P';
    if (!natural && !pause) {
      in.Fail();
    }
    in.Next();
    const bool isLong = letter != core::ToLower(letter);
    line.Add(pause ? kPause : Pitch(*natural + accidental, octave, reading),
             LengthOf(isLong ? 4 : 8));
  }
  return reading;
}

}  // namespace tonadex::formats
