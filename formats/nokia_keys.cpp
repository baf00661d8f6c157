#include "formats/nokia_keys.h"

#include <algorithm>
#include <array>
#include <cstdlib>

#include "core/number.h"
#include "core/text.h"
#include "core/windows1252.h"
#include "formats/note_warning.h"
#include "formats/number_keys.h"
#include "formats/octave_band.h"

namespace tonadex::formats {
namespace {

using namespace core::literals;

constexpr std::size_t kMaxNotes = 50;  // the composer's memory; more give a warning
constexpr double kLowestOctave = 4;
constexpr double kHighestOctave = 7;

constexpr std::string_view kIntroduction =
    u8"Al introducir las notas rodeadas entre paréntesis, debes mantener pulsada esta tecla "
    u8"durante 3 segundos\r\n"
    u8"Los espacios sólo sirven para facilitar la lectura, no debes introducirlos en tu móvil\r\n"_w;
constexpr std::string_view kTooLong = u8"ERROR: La melodia excede el máximo de 50 notas\r\n"_w;

// Each press of "8" goes one level up, each "9" one down.
constexpr std::array<std::string_view, 6> kDurationLevels = {"1", "2", "4", "8", "16", "32"};

// What the phone's composer remembers from note to note.
struct Composer {
  int noteLevel = 3;      // of the last note or pause with a known duration
  int durationLevel = 3;  // the phone's own: a quarter at first
  int octaveLevel = 1;
  char key = '\0';  // of the last note with a known letter
};

// 1 to 6, 0 for an unknown duration.
int DurationLevel(std::string_view duration) {
  const auto found = std::ranges::find(kDurationLevels, duration);
  return found == kDurationLevels.end() ? 0 : static_cast<int>(found - kDurationLevels.begin()) + 1;
}

void AppendDurationKeys(int from, int to, std::string& keys) {
  keys.append(static_cast<std::size_t>(std::abs(to - from)), to > from ? '8' : '9');
}

// "*" cycles through the octaves 1, 2, 3.
void AppendOctaveKeys(int from, int to, std::string& keys) {
  keys.append(static_cast<std::size_t>(to >= from ? to - from : 3 - from + to), '*');
}

void AppendNote(const core::RTTTLNote& note, int octaveLevel, Composer& phone, std::string& keys) {
  const char key = NoteKey(note.Note.front());
  phone.key = key == '\0' ? phone.key : key;
  const std::string_view written(&phone.key, phone.key == '\0' ? 0 : 1);
  if (note.Dotted) {
    keys.append("(").append(written).append(")");
  } else {
    keys += written;
  }
  AppendDurationKeys(phone.durationLevel, phone.noteLevel, keys);
  phone.durationLevel = phone.noteLevel;
  if (core::Contains(note.Note, "#")) {
    keys += '#';
  }
  AppendOctaveKeys(phone.octaveLevel, octaveLevel, keys);
  phone.octaveLevel = octaveLevel;
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
  std::string keys;
  keys.reserve(melody.Notes.size() * 4);
  Composer phone;
  std::size_t number = 0;
  for (const core::RTTTLNote& note : melody.Notes) {
    ++number;
    const double octave = core::ToNumber(note.Octave);
    if (octave > kHighestOctave || octave < kLowestOctave) {
      AppendNoteWarning(warnings, "Error > La nota # ", number,
                        u8" está fuera del rango de octavas"_w);
    }
    const int octaveLevel = OctaveBand(note, baseOctave) + 1;
    const int level = DurationLevel(note.Duration);
    if (level == 0) {
      AppendNoteWarning(warnings, "La nota # ", number, u8" no tiene una duración válida"_w);
    } else {
      phone.noteLevel = level;
    }
    if (core::IsPause(note)) {
      // After a pause the phone is back at the duration before it.
      keys += '0';
      AppendDurationKeys(phone.durationLevel, phone.noteLevel, keys);
    } else {
      AppendNote(note, octaveLevel, phone, keys);
    }
    keys += ' ';
  }
  return keys;
}

}  // namespace tonadex::formats
