#include "formats/octave_range.h"

#include <array>
#include <cmath>
#include <string>
#include <utility>

#include "core/number.h"
#include "core/runtime_error.h"
#include "core/text.h"
#include "core/windows1252.h"

namespace tonadex::formats {
namespace {

constexpr int kOctaves = 11;               // 0 to 10
constexpr std::ptrdiff_t kMaxQuoted = 40;  // maximum characters of a wrong octave in the message

using OctaveCounts = std::array<int, kOctaves>;

[[noreturn]] void ThrowSubscript(std::string_view octave) {
  using namespace core::literals;
  throw core::RunTimeError(
      core::ErrorNumber::kSubscript,
      "la octava " + std::string(octave) + std::string(u8" está fuera del rango de 0 a 10"_w));
}

std::size_t CheckedOctave(const core::NoteList& notes, std::size_t index) {
  const int octave = notes.WholeOctave(notes.Codes()[index]);
  if (octave < 0 || octave >= kOctaves) {
    ThrowSubscript(core::Left(notes[index].Octave, kMaxQuoted));
  }
  return static_cast<std::size_t>(octave);
}

OctaveCounts CountOctaves(const core::NoteList& notes) {
  OctaveCounts counts{};
  const auto codes = notes.Codes();
  counts[0] = static_cast<int>(notes.size() - codes.size());  // empty notes
  for (std::size_t i = 0; i < codes.size(); ++i) {
    const std::size_t octave = codes[i].octave;
    ++counts[octave < kOctaves ? octave : CheckedOctave(notes, i)];
  }
  return counts;
}

// Returns the most used octave, the highest on a tie, and sets its count to 0.
int TakeMostUsed(OctaveCounts& counts, int& octave) {
  std::size_t most = 0;
  for (std::size_t i = 0; i < counts.size(); ++i) {
    most = counts[i] >= counts[most] ? i : most;
  }
  octave = static_cast<int>(most);
  return std::exchange(counts[most], 0);
}

}  // namespace

std::int16_t AutoOctave(core::RTTTLMelody& melody, int rangeSpan) {
  core::ParseOrReport(melody);  // the notes parsed before an error count
  OctaveCounts counts = CountOctaves(melody.Notes);
  if (rangeSpan > kOctaves) {
    ThrowSubscript(std::to_string(rangeSpan));
  }
  int sum = 0;
  int used = 0;
  for (int i = 0; i < rangeSpan; ++i) {
    int octave = 0;
    if (TakeMostUsed(counts, octave) != 0) {
      sum += octave;
      ++used;
    }
  }
  return core::ToInt16(std::ceil(core::Divide(sum, used) - rangeSpan / 2.0));
}

std::int16_t frmOctave::mGetOctaveRange(std::string_view /*DefaultOctave*/, int RangeSpan) const {
  return AutoOctave(gMelody, RangeSpan);
}

}  // namespace tonadex::formats
