#include "formats/samsung_keys.h"

#include <array>

#include "core/windows1252.h"
#include "formats/note_warning.h"
#include "formats/number_keys.h"
#include "formats/octave_band.h"

namespace tonadex::formats {
namespace {

using namespace core::literals;

constexpr std::int16_t kDefaultBaseOctave = 4;
constexpr int kOctaveSpan = 3;          // octaves above the base
constexpr std::size_t kMaxNotes = 100;  // capacity of the composer; more notes cause a warning

struct Presses {
  std::size_t note, pause, dotRest;
};

// Presses of the duration key by NoteCodes::length. Type 1 uses the note column for pauses too.
// dotRest is a rest of half the note's length (a sixteenth for a thirty-second note), which
// replaces the dot.
constexpr std::array<Presses, 6> kPresses1 = {
    {{2, 2, 1}, {1, 1, 0}, {0, 0, 4}, {4, 4, 3}, {3, 3, 3}, {3, 3, 3}}};
constexpr std::array<Presses, 6> kPresses2 = {
    {{4, 4, 0}, {3, 4, 0}, {0, 1, 0}, {1, 2, 0}, {2, 3, 0}, {2, 3, 0}}};

struct Type {
  const std::array<Presses, 6>& presses;
  char sharpKey, durationKey;
  std::string_view introduction;
  std::string_view tooLong;
  std::string_view finding;     // before the note's number
  std::string_view outOfRange;  // after it
  bool pauseColumn;             // a pause is only ">"; otherwise "0" and the duration key
  bool dotRests;
};

constexpr Type kType1 = {kPresses1,
                         '#',
                         '*',
                         "",
                         u8"La melodía supera el máximo de notas permitidas (100).\r\n"_w,
                         "La nota # ",
                         u8" está fuera del rango de octavas."_w,
                         false,
                         true};
constexpr Type kType2 = {
    kPresses2,
    '^',
    '<',
    u8"Las flechas del teclado de tu móvil se representan con los signos <,>,^\r\n"_w,
    u8"Error > La melodía supera el máximo de notas permitidas (100).\r\n"_w,
    "Error > La nota # ",
    u8" está fuera del rango de octavas"_w,
    true,
    false};

// The counts and the key of the last note that had them: notes of unknown duration or letter repeat
// them.
struct Memory {
  std::size_t note = 0;     // set by notes and pauses
  std::size_t pause = 0;    // set by pauses only
  std::size_t dotRest = 0;  // set by dotted notes only
  char key = '\0';
};

const Presses* FindPresses(const Type& type, const core::NoteCodes& note) {
  return note.length < type.presses.size() ? &type.presses[note.length] : nullptr;
}

std::string_view OctaveMark(double octave, std::int16_t base) {
  return octave <= base ? "88" : octave > base + 1 ? "8" : "";
}

void AppendPause(const Type& type, const Presses* known, Memory& memory, std::string& keys) {
  if (type.pauseColumn) {
    memory.pause = known == nullptr ? memory.pause : known->pause;
    keys.append(memory.pause, '>');
  } else {
    keys.append("0").append(memory.note, type.durationKey);
  }
  keys += ' ';
}

void AppendDotRest(const Presses* known, Memory& memory, std::string& keys) {
  memory.dotRest = known == nullptr ? memory.dotRest : known->dotRest;
  keys.append("0").append(memory.dotRest, '*').append(" ");
}

void AppendNote(const Type& type, const core::NoteCodes& note, std::string_view octaveMark,
                Memory& memory, std::string& keys) {
  const char key = NoteKey(note.letter);
  memory.key = key == '\0' ? memory.key : key;
  if (memory.key != '\0') {
    keys += memory.key;
  }
  if (note.IsSharp()) {
    keys += type.sharpKey;
  }
  keys.append(octaveMark).append(memory.note, type.durationKey).append(" ");
}

std::string SamsungKeyPresses(const Type& type, core::RTTTLMelody& melody, std::string& warnings,
                              std::int16_t baseOctave) {
  if (!core::ParseOrReport(melody)) {
    return {};
  }
  const std::int16_t base = BaseOctave(baseOctave, kDefaultBaseOctave);
  warnings += type.introduction;
  if (melody.Notes.size() > kMaxNotes) {
    warnings += type.tooLong;
  }
  std::string keys;
  keys.reserve(melody.Notes.size() * 6);
  Memory memory;
  std::size_t number = 0;
  for (const core::NoteCodes& note : melody.Notes.Codes()) {
    ++number;
    const double octave = melody.Notes.Octave(note);
    if (octave > base + kOctaveSpan || octave < base) {
      AppendNoteWarning(warnings, type.finding, number, type.outOfRange);
    }
    const Presses* known = FindPresses(type, note);
    if (known == nullptr) {
      AppendNoteWarning(warnings, type.finding, number, kBadDuration);
    } else {
      memory.note = known->note;
    }
    if (core::IsPause(note)) {
      AppendPause(type, known, memory, keys);
      continue;
    }
    AppendNote(type, note, OctaveMark(octave, base), memory, keys);
    if (type.dotRests && note.dotted) {
      AppendDotRest(known, memory, keys);
    }
  }
  return keys;
}

}  // namespace

std::string SamsungKeyPresses1(core::RTTTLMelody& melody, std::string& warnings,
                               std::int16_t baseOctave) {
  return SamsungKeyPresses(kType1, melody, warnings, baseOctave);
}

std::string SamsungKeyPresses2(core::RTTTLMelody& melody, std::string& warnings,
                               std::int16_t baseOctave) {
  return SamsungKeyPresses(kType2, melody, warnings, baseOctave);
}

}  // namespace tonadex::formats
