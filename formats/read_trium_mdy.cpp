#include <algorithm>

#include "core/rtttl.h"
#include "core/text.h"
#include "core/windows1252.h"
#include "formats/readers.h"

namespace tonadex::formats {
namespace {

using namespace core::literals;

constexpr int kLowOctave = 5;  // of lower-case names; the others are one higher
constexpr int kWrittenTempo = 100;
constexpr int kFlatB = 10;  // German b; h is b

// Behind the lines of the header.
std::size_t NotesOf(std::string_view text) {
  const std::size_t name = BehindKey(text, "NAME="), tempo = BehindKey(text, "TEMPO=");
  if (tempo == std::string_view::npos) {
    RefuseFile({u8"falta la línea «TEMPO=»"_w});
  }
  const std::size_t header = name == std::string_view::npos ? tempo : std::max(name, tempo);
  return std::min(text.find_first_of(core::kCrLf, header), text.size());
}

core::PlainNote ReadPitch(Scanner& in, Reading& reading) {
  const char letter = in.Next(), lower = core::ToLower(letter);
  const std::optional<int> natural = lower == 'h'   ? SemitoneOfLetter('b')
                                     : lower == 'b' ? kFlatB
                                                    : SemitoneOfLetter(lower);
  if (!natural) {
    in.Fail();
  }
  const int octave = letter == lower ? kLowOctave : kLowOctave + 1;
  return Pitch(*natural + (in.Take('#') ? 1 : 0), octave, reading);
}

}  // namespace

Reading ReadTriumMdy(std::string_view text) {
  Reading reading;
  reading.melody.name = HeaderValue(text, "NAME=");
  reading.SetTempo(HeaderValue(text, "TEMPO="), kWrittenTempo);
  NoteLine line(reading);
  Scanner in(text, NotesOf(text));
  while (!in.AtEnd()) {
    if (!in.Take('M')) {
      in.Fail();
    }
    const core::PlainNote pitch = in.Take('p') || in.Take('P') ? kPause : ReadPitch(in, reading);
    Scanner before = in;
    const int duration = in.Number().value_or(0);
    if (std::ranges::find(core::kLengths, duration) == core::kLengths.end()) {
      before.Fail();
    }
    line.Add(pitch,
             Modified(LengthOf(duration), in.Take('.') ? Modifier::kDotted : Modifier::kNone));
  }
  return reading;
}

}  // namespace tonadex::formats
