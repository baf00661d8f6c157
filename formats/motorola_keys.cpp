#include "formats/motorola_keys.h"

#include <algorithm>
#include <array>

#include "core/number.h"
#include "core/text.h"
#include "core/windows1252.h"
#include "formats/imelody_notation.h"
#include "formats/note_length.h"
#include "formats/octave_band.h"

namespace tonadex::formats {
namespace {

using namespace core::literals;

constexpr std::int16_t kDefaultBaseOctave = 5;
constexpr int kOctaveSpan = 3;     // octaves above the base
constexpr int kWrittenOctave = 3;  // number of the base octave in iMelody keys

struct LetterKey {
  char letter;
  char key;
  std::size_t presses;
};

constexpr std::array kLetterKeys = std::to_array<LetterKey>({
    {'a', '2', 1},
    {'b', '2', 2},
    {'c', '2', 3},
    {'d', '3', 1},
    {'e', '3', 2},
    {'f', '3', 3},
    {'g', '4', 1},
    {'p', '4', 2},
});

struct DurationCode {
  std::string_view duration;
  double code;
};

constexpr std::array kDurationCodes =
    std::to_array<DurationCode>({{"32", 1}, {"16", 1}, {"8", 2}, {"4", 2}, {"2", 3}, {"1", 3}});

constexpr std::string_view kKeysInstruction =
    u8"Introduce la melodia en tu móvil pulsando las teclas indicadas.\r\n\r\n"
    u8"No debes introducir los espacios. Tonadex los muestra solo para facilitar la lectura"
    u8"\r\n\r\n"_w;
constexpr std::string_view kIMelodyInstruction =
    u8"Esta melodia es válida para móviles Motorola que soporten las pulsaciones I-Melody.\r\n"
    u8"El tempo de la melodia original se ha convertido de "_w;

// What the phone's composer remembers from note to note.
struct Composer {
  int octave = 2;
  double durationCode = 1;
  LetterKey letter{'\0', '\0', 0};  // the last known one
};

// An unknown duration is its own code ("64" is 64): deliberate.
double CodeOf(std::string_view duration) {
  const auto found = std::ranges::find(kDurationCodes, duration, &DurationCode::duration);
  return found == kDurationCodes.end() ? core::ToNumber(duration) : found->code;
}

void AppendGroup(const core::RTTTLNote& note, int octave, Composer& phone, std::string& keys) {
  if (octave != phone.octave) {
    keys.append(static_cast<std::size_t>(octave), '1');
    phone.octave = octave;
  }
  const auto found = std::ranges::find(kLetterKeys, note.Note.front(), &LetterKey::letter);
  phone.letter = found == kLetterKeys.end() ? phone.letter : *found;
  keys.append(phone.letter.presses, phone.letter.key);
  if (note.Note.ends_with('#')) {
    keys += '7';
  }
  const double code = CodeOf(note.Duration);
  if (code != phone.durationCode) {
    keys.append(static_cast<std::size_t>(std::max<std::int16_t>(core::ToInt16(code), 0)), '0');
    phone.durationCode = code;
  }
  keys += ' ';
}

// base, base + 1 and base + 2 are written 3, 4 and 5, but base + 3 is written as the melody's
// octave: kept, because stored conversions and phones depend on it.
int WrittenOctave(std::string_view octave, std::int16_t base) {
  const double clamped = std::clamp<double>(core::ToNumber(octave), base, base + kOctaveSpan);
  const int above = core::ToInt16(clamped) - base;
  return above == kOctaveSpan ? base + above : kWrittenOctave + above;
}

}  // namespace

IMelodyNote ToIMelodyNote(const core::RTTTLNote& note, std::string_view beats) {
  // For a dotted band DurationForLength appends "." to the pitch: that dot is never written, and
  // it hides a sharp. Kept, because phones have always received it so.
  std::string pitch(note.Note);
  const std::string_view duration =
      DurationForLength(NoteLengthMs(note.Duration, beats, note.Dotted), pitch);
  return {duration, core::Contains(pitch, "p"), pitch.ends_with('#')};
}

std::string MotorolaKeyPresses(core::RTTTLMelody& melody, std::string& warnings,
                               std::int16_t baseOctave) {
  if (!core::ParseOrReport(melody)) {
    return {};
  }
  const std::int16_t base = BaseOctave(baseOctave, kDefaultBaseOctave);
  std::string keys;
  keys.reserve(melody.Notes.size() * 6);
  Composer phone;
  for (const core::RTTTLNote& note : melody.Notes) {
    AppendGroup(note, OctaveBand(note, base) + 1, phone, keys);
  }
  warnings = kKeysInstruction;
  return keys;
}

std::string MotorolaIMelodyKeys(core::RTTTLMelody& melody, std::string& warnings,
                                std::int16_t baseOctave) {
  if (!core::ParseOrReport(melody)) {
    return {};
  }
  const std::int16_t base = BaseOctave(baseOctave, kDefaultBaseOctave);
  warnings = std::string(kIMelodyInstruction) + melody.Beats + " a 125.\r\n";
  std::string keys;
  keys.reserve(melody.Notes.size() * 6);
  for (const core::RTTTLNote& note : melody.Notes) {
    const auto [duration, pause, sharp] = ToIMelodyNote(note, melody.Beats);
    if (pause) {
      keys += IMelodyRest(duration);
    } else {
      keys.append("*").append(std::to_string(WrittenOctave(note.Octave, base)));
      keys += sharp ? "#" : "";
      keys += note.Note.front();
      keys += IMelodyDigit(duration);
    }
    if (note.Dotted) {
      keys += '.';
    }
  }
  return keys;
}

}  // namespace tonadex::formats
