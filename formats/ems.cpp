#include "formats/ems.h"

#include <algorithm>

#include "core/number.h"
#include "core/text.h"
#include "core/windows1252.h"
#include "formats/imelody_notation.h"
#include "formats/note_warning.h"

namespace tonadex::formats {
namespace {

using namespace core::literals;

constexpr double kLowestOctave = 1;
constexpr double kHighestOctave = 8;
constexpr int kOctaveSpan = 3;         // iMelody octaves above the base
constexpr int kLowestIMelody = 4;      // written without an octave mark
constexpr std::size_t kLineSize = 75;  // longest iMelody line
constexpr std::size_t kNoteSize = 7;   // longest note "*5#d2.", rounded up

constexpr std::string_view kFinding = "ERROR: La nota # ";
constexpr std::string_view kBadDigit = " no tiene una duracion valida.";  // without accents

constexpr std::uint8_t kFirstShort = 3;  // NoteCodes::length of an eighth

bool IsOutOfRange(double octave) {
  return octave > kHighestOctave || octave < kLowestOctave;
}

void AppendEMelodyNote(const core::NoteCodes& note, bool isLong, bool high, std::string& text) {
  if (core::IsPause(note)) {
    text += isLong ? "pp" : "p";
    return;
  }
  if (high) {
    text += '+';
  }
  if (note.IsSharp()) {
    text += '#';
  }
  const char letter = note.letter;
  text += isLong ? core::ToUpper(letter) : letter;
}

void AppendIMelodyNote(const core::NoteCodes& note, double octave, std::int16_t baseOctave,
                       std::string_view digit, std::string& text) {
  const double clamped = std::clamp<double>(octave, baseOctave, baseOctave + kOctaveSpan);
  const int written = kLowestIMelody + core::ToInt16(clamped) - baseOctave;
  if (written != kLowestIMelody) {
    text.append("*").append(std::to_string(written));
  }
  if (note.IsSharp()) {
    text += '#';
  }
  text += note.letter;
  text += digit;
}

// The folded melody line, without a line end after its last part.
std::string IMelodyNotes(const core::RTTTLMelody& melody, std::string& warnings,
                         std::int16_t baseOctave) {
  std::string text = "MELODY:";
  text.reserve(melody.Notes.size() * kNoteSize);
  std::size_t lineStart = 0;
  std::string_view digit;
  std::string_view rest;
  std::size_t number = 0;
  for (const core::NoteCodes& note : melody.Notes.Codes()) {
    ++number;
    const IMelodyDuration known = IMelodyDurationOf(note);
    if (known.digit.empty()) {
      AppendNoteWarning(warnings, kFinding, number, kBadDigit);
    } else {
      digit = known.digit;
    }
    const double octave = melody.Notes.Octave(note);
    if (IsOutOfRange(octave)) {
      AppendNoteWarning(warnings, kFinding, number,
                        u8" está fuera del rango de octavas permitido."_w);
    }
    if (text.size() - lineStart + kNoteSize > kLineSize) {
      text += core::kCrLf;
      lineStart = text.size();
    }
    if (!core::IsPause(note)) {
      AppendIMelodyNote(note, octave, baseOctave, digit, text);
    } else if (known.digit.empty()) {
      AppendNoteWarning(warnings, kFinding, number, kBadDuration);
      text += rest;
    } else {
      rest = known.rest;
      text += rest;
    }
    if (note.dotted) {
      text += '.';
    }
  }
  return text;
}

}  // namespace

std::string EMelodyText(core::RTTTLMelody& melody, std::string& warnings, std::int16_t baseOctave) {
  if (!core::ParseOrReport(melody)) {
    return {};
  }
  warnings.clear();
  std::string text = "BEGIN:EMELODY\r\nVERSION:1.0\r\nMELODY:";
  text.reserve(text.size() + melody.Notes.size() * 3);
  bool isLong = false;
  std::size_t number = 0;
  for (const core::NoteCodes& note : melody.Notes.Codes()) {
    ++number;
    if (note.length == core::NoteCodes::kNoLength) {
      AppendNoteWarning(warnings, kFinding, number, kBadDuration);
    } else {
      isLong = note.length < kFirstShort;
    }
    const double octave = melody.Notes.Octave(note);
    if (IsOutOfRange(octave)) {
      AppendNoteWarning(warnings, kFinding, number,
                        u8" está fuera del rango de octavas permitido"_w);
    }
    AppendEMelodyNote(note, isLong, octave > baseOctave, text);
  }
  return text + "\r\nEND:EMELODY";
}

std::string IMelodyText(core::RTTTLMelody& melody, std::string& warnings, std::int16_t baseOctave) {
  if (!core::ParseOrReport(melody)) {
    return {};
  }
  warnings.clear();
  return "BEGIN:IMELODY\r\nVERSION:1.2\r\nFORMAT:CLASS1.0\r\nNAME:" + melody.Name +
         "\r\nBEAT:" + melody.Beats + "\r\n" + IMelodyNotes(melody, warnings, baseOctave) +
         "\r\nEND:IMELODY";
}

}  // namespace tonadex::formats
