#include "formats/nokia_keys.h"

#include <array>
#include <utility>

#include "core/windows1252.h"
#include "formats/note_warning.h"
#include "formats/number_keys.h"
#include "formats/octave_band.h"
#include "formats/pieces.h"

namespace tonadex::formats {
namespace {

using namespace core::literals;

constexpr std::size_t kMaxNotes = 50;  // capacity of the composer; more notes cause a warning
constexpr double kLowestOctave = 4;
constexpr double kHighestOctave = 7;

constexpr std::string_view kIntroduction =
    u8"Al introducir las notas rodeadas entre paréntesis, debes mantener pulsada esta tecla "
    u8"durante 3 segundos\r\n"
    u8"Los espacios sólo sirven para facilitar la lectura, no debes introducirlos en tu móvil\r\n"_w;
constexpr std::string_view kTooLong = u8"ERROR: La melodia excede el máximo de 50 notas\r\n"_w;

constexpr std::size_t kLevels = core::NoteCodes::kNoLength;
constexpr std::size_t kBands = 3;
constexpr std::size_t kMostKeys = 12;  // longest group, "(1)88888#** "

// Presses that change one duration into another: each "8" halves the length, each "9" doubles it.
constexpr auto kDurationKeys = [] {
  std::array<std::array<Piece, kLevels>, kLevels> keys;
  for (std::size_t from = 0; from < kLevels; ++from) {
    for (std::size_t to = 0; to < kLevels; ++to) {
      keys[from][to] = to > from ? std::string_view("88888").substr(0, to - from)
                                 : std::string_view("99999").substr(0, from - to);
    }
  }
  return keys;
}();

// "*" cycles through the three octaves.
constexpr std::array<std::array<Piece, kBands>, kBands> kOctaveKeys = {
    {{"", "*", "**"}, {"**", "", "*"}, {"*", "**", ""}}};

// State of the phone's composer between notes.
struct Composer {
  std::size_t noteLevel = 2;      // of the last note or pause with a known duration
  std::size_t durationLevel = 2;  // the phone's current one: initially a quarter
  std::size_t octave = 0;
  char key = '\0';  // of the last note with a known letter
};

// After a pause the phone returns to the duration before the pause.
void PutNote(const core::NoteCodes& note, std::size_t octave, Composer& phone, PieceWriter& keys) {
  const bool pause = core::IsPause(note);
  const char key = NoteKey(note.letter);
  phone.key = key == '\0' ? phone.key : key;
  const char written = pause ? '0' : phone.key;
  const bool held = note.dotted && !pause;
  keys.Put('(', held);
  keys.Put(written, written != '\0');
  keys.Put(')', held);
  keys.Put(kDurationKeys[phone.durationLevel][phone.noteLevel]);
  keys.Put('#', note.IsSharp());
  phone.durationLevel = pause ? phone.durationLevel : phone.noteLevel;
  const std::size_t before = std::exchange(phone.octave, pause ? phone.octave : octave);
  keys.Put(kOctaveKeys[before][phone.octave]);
  keys.Put(' ');
}

}  // namespace

std::string NokiaKeyPresses(core::RTTTLMelody& melody, std::string& warnings,
                            std::int16_t baseOctave) {
  if (!core::ParseOrReport(melody)) {
    return {};
  }
  warnings += kIntroduction;
  if (melody.Notes.size() > kMaxNotes) {
    warnings += kTooLong;
  }
  std::string text;
  PieceWriter keys(text, melody.Notes.size() * kMostKeys);
  Composer phone;
  std::size_t number = 0;
  for (const core::NoteCodes& note : melody.Notes.Codes()) {
    ++number;
    const double octave = melody.Notes.Octave(note);
    if (octave > kHighestOctave || octave < kLowestOctave) {
      AppendNoteWarning(warnings, "Error > La nota # ", number,
                        u8" está fuera del rango de octavas"_w);
    }
    if (note.length == core::NoteCodes::kNoLength) {
      AppendNoteWarning(warnings, "La nota # ", number, kBadDuration);
    } else {
      phone.noteLevel = note.length;
    }
    PutNote(note, OctaveBand(octave, baseOctave), phone, keys);
  }
  keys.End(text);
  return text;
}

}  // namespace tonadex::formats
