#include "phones/transpose.h"

#include <cstdlib>
#include <utility>

#include "core/number.h"
#include "core/rtttl.h"
#include "core/runtime_error.h"
#include "core/text.h"
#include "core/windows1252.h"
#include "formats/pitch.h"
#include "phones/rtttl_item.h"

namespace tonadex::phones {
namespace {

using namespace core::literals;
using formats::kSemitones;

constexpr std::string_view kOctaveKey = "o=";

[[noreturn]] void Refuse(std::string_view why) {
  throw core::RunTimeError(core::ErrorNumber::kInvalidArgument, std::string(why));
}

bool IsOctave(int octave) {
  return octave >= kLowestOctave && octave <= kHighestOctave;
}

int OctaveNumber(std::string_view octave) {
  return core::ToInt16(core::ToNumber(octave));
}

// The header's settings with another octave.
std::string Settings(std::string_view settings, int octave) {
  std::string text;
  for (const std::string_view setting : core::SplitText(settings, ',')) {
    text.append(text.empty() ? "" : ",");
    text += setting.starts_with(kOctaveKey) ? std::string(kOctaveKey) + std::to_string(octave)
                                            : std::string(setting);
  }
  return text;
}

std::string MovedItem(const core::RTTTLNote& note, const core::RTTTLMelody& melody, int semitones,
                      int header) {
  std::string item(note.Duration == melody.DefaultDuration ? "" : note.Duration);
  const std::string_view dot = note.Dotted ? "." : "";
  if (core::IsPause(note)) {
    return item.append(note.Note).append(dot);
  }
  const auto semitone = formats::Semitone(note.Note);
  if (!semitone) {
    Refuse(std::string(u8"«"_w) + std::string(note.Note) + std::string(u8"» no es ninguna nota"_w));
  }
  // kUp keeps the operands of "/" and "%" positive.
  constexpr int kUp = 100;
  const int pitch = (OctaveNumber(note.Octave) + kUp) * kSemitones + *semitone + semitones;
  const int octave = pitch / kSemitones - kUp;
  if (!IsOctave(octave)) {
    Refuse(u8"alguna nota quedaría fuera de las octavas 1 a 8"_w);
  }
  item.append(formats::kPitches[static_cast<std::size_t>(pitch % kSemitones)]).append(dot);
  return octave == header ? item : item + std::to_string(octave);
}

}  // namespace

std::string Transposed(std::string_view rtttl, int semitones) {
  if (std::abs(semitones) > kMostSemitones) {
    Refuse(u8"se puede transportar 36 semitonos como mucho"_w);
  }
  core::RTTTLMelody melody;
  core::InitMelody(melody, {});
  melody.Text = rtttl;
  // The first parse removes blanks; the second recognises the settings that follow one.
  for (int reading = 0; reading < 2; ++reading) {
    if (core::ParseRTTTL(melody) != core::kParsed) {
      Refuse(u8"la melodía tiene algo que no se puede leer"_w);
    }
  }
  const std::string_view text = melody.Text;
  const std::size_t name = text.find(':'), header = text.find(':', name + 1);
  const std::string_view settings = text.substr(name + 1, header - name - 1);
  const int before = OctaveNumber(melody.DefaultOctave);
  const bool named =
      ("," + std::string(settings)).find("," + std::string(kOctaveKey)) != std::string::npos;
  const int moved = before + semitones / kSemitones;
  const int octave = named && IsOctave(moved) ? moved : before;
  std::string result(rtttl.substr(0, rtttl.find(':')));
  result.append(":").append(Settings(settings, octave));
  char separator = ':';
  for (const core::RTTTLNote& note : melody.Notes) {
    result += std::exchange(separator, ',') + MovedItem(note, melody, semitones, octave);
  }
  return result;
}

}  // namespace tonadex::phones
