#include "formats/octave_range.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <string>

#include "core/number.h"
#include "core/runtime_error.h"
#include "core/text.h"
#include "core/windows1252.h"

namespace tonadex::formats {
namespace {

constexpr int kOctaves = 11;               // 0 to 10
constexpr std::ptrdiff_t kMaxQuoted = 40;  // characters of a wrong octave in the message

struct OctaveCount {
  int octave = 0;
  int count = 0;
};

using OctaveCounts = std::array<OctaveCount, kOctaves>;

[[noreturn]] void ThrowSubscript(std::string_view octave) {
  using namespace core::literals;
  throw core::RunTimeError(
      core::ErrorNumber::kSubscript,
      "la octava " + std::string(octave) + std::string(u8" está fuera del rango de 0 a 10"_w));
}

OctaveCounts CountOctaves(const core::RTTTLMelody& melody) {
  OctaveCounts counts;
  for (std::size_t i = 0; i < counts.size(); ++i) {
    counts[i].octave = static_cast<int>(i);
  }
  for (std::size_t i = 0; i < melody.Notes.size(); ++i) {
    const std::string_view text = melody.Notes[i].Octave;
    const int octave = core::ToInt16(core::ToNumber(text));
    if (octave < 0 || octave >= kOctaves) {
      ThrowSubscript(core::Left(text, kMaxQuoted));
    }
    ++counts[static_cast<std::size_t>(octave)].count;
  }
  return counts;
}

}  // namespace

std::int16_t AutoOctave(core::RTTTLMelody& melody, int rangeSpan) {
  core::ParseOrReport(melody);  // the notes parsed before an error count
  OctaveCounts counts = CountOctaves(melody);
  std::ranges::stable_sort(counts, {}, &OctaveCount::count);
  if (rangeSpan > kOctaves) {
    ThrowSubscript(std::to_string(rangeSpan));
  }
  double sum = 0;
  double used = 0;
  for (int i = kOctaves - rangeSpan; i < kOctaves; ++i) {
    const OctaveCount& most = counts[static_cast<std::size_t>(i)];
    if (most.count != 0) {
      sum += most.octave;
      ++used;
    }
  }
  return core::ToInt16(std::ceil(core::Divide(sum, used) - rangeSpan / 2.0));
}

std::int16_t frmOctave::mGetOctaveRange(std::string_view /*DefaultOctave*/, int RangeSpan) const {
  return AutoOctave(gMelody, RangeSpan);
}

}  // namespace tonadex::formats
