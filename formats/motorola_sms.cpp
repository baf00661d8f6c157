#include "formats/motorola_sms.h"

#include <algorithm>
#include <array>

#include "core/number.h"
#include "core/text.h"
#include "core/windows1252.h"
#include "formats/octave_band.h"
#include "formats/shift_right.h"

namespace tonadex::formats {
namespace {

using namespace core::literals;

constexpr std::int16_t kDefaultBaseOctave = 5;
constexpr std::size_t kMaxNotes = 35;  // capacity of the message

constexpr std::string_view kTooLong =
    "Melodia demasiado larga para Motorola.Solo se muestran las primeras 35 notas de la melodia."
    "\r\n\r\n";
constexpr std::string_view kInstruction =
    u8"Envia esta melodia a tu teléfono escribiendo esto en un mensaje de texto, o mediante un "
    u8"cable de datos."_w;

constexpr std::array<std::string_view, 3> kOctaveMarks = {"-", "", "+"};

// The digit of a duration is its index + 1.
constexpr std::array<std::string_view, 6> kDurations = {"32", "16", "8", "4", "2", "1"};

void AppendToken(const core::RTTTLNote& note, std::size_t octaveBand, std::string& tokens) {
  if (core::IsPause(note)) {
    tokens += 'R';
  } else {
    for (const char c : note.Note) {
      tokens += core::ToUpper(c);
    }
    tokens += kOctaveMarks[octaveBand];
  }
  const auto duration = std::ranges::find(kDurations, note.Duration);
  if (duration != kDurations.end()) {
    tokens += static_cast<char>('1' + (duration - kDurations.begin()));
  }
}

}  // namespace

std::string CheckCharacters(std::string_view tokens) {
  std::int32_t check = 0;
  for (const char c : tokens) {
    check ^= core::Code(c);
  }
  // A value below 16 has one hexadecimal digit, which is both the first and the last.
  const std::int32_t last = check % 16;
  const std::int32_t first = check < 16 ? last : ShiftRight(check, 4);
  return {static_cast<char>('0' + first), static_cast<char>('0' + last)};
}

std::string MotorolaSmsText(core::RTTTLMelody& melody, std::string& warnings,
                            std::int16_t baseOctave) {
  if (!core::ParseOrReport(melody)) {
    return {};
  }
  const std::int16_t base = BaseOctave(baseOctave, kDefaultBaseOctave);
  warnings.clear();
  std::string tokens;
  std::size_t count = 0;
  for (const core::RTTTLNote& note : melody.Notes) {
    if (count == kMaxNotes) {
      break;
    }
    ++count;
    AppendToken(note, OctaveBand(core::ToNumber(note.Octave), base), tokens);
  }
  if (count == kMaxNotes) {  // warns for exactly 35 notes too: deliberate
    warnings += kTooLong;
  }
  warnings += kInstruction;
  return "L35&2 " + tokens + "&&" + CheckCharacters(tokens);
}

}  // namespace tonadex::formats
