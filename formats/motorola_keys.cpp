#include "formats/motorola_keys.h"

#include <algorithm>
#include <array>

#include "core/number.h"
#include "core/text.h"
#include "core/windows1252.h"
#include "formats/imelody_notation.h"
#include "formats/note_length.h"
#include "formats/octave_band.h"
#include "formats/pieces.h"

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

constexpr LetterKey kLetterKeys[] = {{'a', '2', 1}, {'b', '2', 2}, {'c', '2', 3}, {'d', '3', 1},
                                     {'e', '3', 2}, {'f', '3', 3}, {'g', '4', 1}, {'p', '4', 2}};

// By NoteCodes::length.
constexpr auto kRests = [] {
  std::array<Piece, kIMelodyDurations.size()> rests;
  std::ranges::transform(kIMelodyDurations, rests.begin(), &IMelodyDuration::rest);
  return rests;
}();

// By NoteCodes::length.
constexpr std::array<double, core::kLengths.size()> kDurationCodes = {3, 3, 2, 2, 1, 1};

constexpr std::string_view kKeysInstruction =
    u8"Introduce la melodia en tu móvil pulsando las teclas indicadas.\r\n\r\n"
    u8"No debes introducir los espacios. Tonadex los muestra solo para facilitar la lectura"
    u8"\r\n\r\n"_w;
constexpr std::string_view kIMelodyInstruction =
    u8"Esta melodia es válida para móviles Motorola que soporten las pulsaciones I-Melody.\r\n"
    u8"El tempo de la melodia original se ha convertido de "_w;

// State of the phone's composer between notes.
struct Composer {
  std::size_t octave = 2;
  double durationCode = 1;
  LetterKey letter{'\0', '\0', 0};  // of the last note with a known letter
};

// The code of an unknown duration is the duration itself ("64" is 64): deliberate.
double CodeOf(const core::NoteList& notes, const core::NoteCodes& note) {
  return note.length < kDurationCodes.size() ? kDurationCodes[note.length] : notes.Duration(note);
}

void AppendGroup(const core::NoteList& notes, const core::NoteCodes& note, std::size_t octave,
                 Composer& phone, std::string& keys) {
  if (octave != phone.octave) {
    keys.append(octave, '1');
    phone.octave = octave;
  }
  const auto* found = std::ranges::find(kLetterKeys, note.letter, &LetterKey::letter);
  phone.letter = found == std::end(kLetterKeys) ? phone.letter : *found;
  keys.append(phone.letter.presses, phone.letter.key);
  if (note.IsSharp()) {
    keys += '7';
  }
  const double code = CodeOf(notes, note);
  if (code != phone.durationCode) {
    keys.append(static_cast<std::size_t>(std::max<std::int16_t>(core::ToInt16(code), 0)), '0');
    phone.durationCode = code;
  }
  keys += ' ';
}

// base to base + 2 are written as 3 to 5, but base + 3 is written as its own number: kept, because
// stored conversions and phones depend on it.
int WrittenOctave(double octave, std::int16_t base) {
  const double clamped = std::clamp<double>(octave, base, base + kOctaveSpan);
  const int above = core::ToInt16(clamped) - base;
  return above == kOctaveSpan ? base + above : kWrittenOctave + above;
}

// "*" and the written octave, computed on first use. The octave in a note is at most 8; the
// melody's default may be any number.
class OctaveMarks {
 public:
  OctaveMarks(const core::NoteList& notes, std::int16_t base) : notes_(notes), base_(base) {}

  const Piece& operator[](const core::NoteCodes& note) {
    Piece& mark = marks_[std::min<std::size_t>(note.octave, marks_.size() - 1)];
    if (mark.size == 0) {
      mark = Piece("*" + std::to_string(WrittenOctave(notes_.Octave(note), base_)));
    }
    return mark;
  }

 private:
  const core::NoteList& notes_;
  std::int16_t base_;
  std::array<Piece, 10> marks_{};
};

constexpr std::size_t kMostKeys = 12;  // "*-12345#c0."

}  // namespace

std::string MotorolaKeyPresses(core::RTTTLMelody& melody, std::string& warnings,
                               std::int16_t baseOctave) {
  if (!core::ParseOrReport(melody)) {
    return {};
  }
  const std::int16_t base = BaseOctave(baseOctave, kDefaultBaseOctave);
  std::string keys;
  keys.reserve(melody.Notes.size() * 6);
  Composer phone;
  for (const core::NoteCodes& note : melody.Notes.Codes()) {
    AppendGroup(melody.Notes, note, OctaveBand(melody.Notes.Octave(note), base) + 1, phone, keys);
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
  std::string text;
  PieceWriter keys(text, melody.Notes.size() * kMostKeys);
  OctaveMarks octaves(melody.Notes, base);
  Tempo125Bands bands(melody.Beats);
  for (const core::NoteCodes& note : melody.Notes.Codes()) {
    // A dot that comes from the band is never written and suppresses the sharp. Kept, because
    // phones have always received it so.
    const Band& band = bands[note];
    if (note.letter == 'p') {
      keys.Put(kRests[band.length]);
    } else {
      keys.Put(octaves[note]);
      keys.Put('#', note.IsSharp() && !band.dotted);
      keys.Put(note.letter);
      keys.Put(static_cast<char>('0' + band.length));
    }
    keys.Put('.', note.dotted);
  }
  keys.End(text);
  return text;
}

}  // namespace tonadex::formats
