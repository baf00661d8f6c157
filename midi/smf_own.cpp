#include "midi/smf_own.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <string_view>

#include "midi/mMidiLibOut.h"

namespace tonadex::midi {
namespace {

constexpr std::string_view kOwnName = "MIDI by Tonadex";
constexpr double kOwnWholeNote = 77;       // ticks
constexpr std::uint32_t kOwnDotted32 = 4;  // ticks; the only length outside the rule
constexpr std::uint32_t kUnitsPerQuarter = 16;
constexpr std::uint32_t kStep = 2;  // units per thirty-second

}  // namespace

bool IsOwnFile(const SmfFile& file) {
  const SmfTrack& track = file.tracks.front();
  return file.tracks.size() == 1 && track.name.starts_with(kOwnName) && track.tempos.size() == 1 &&
         track.tempos.front().microseconds == kTempoMicroseconds;
}

SmfFile WithPlainTimes(const SmfFile& file) {
  const auto units = [](std::uint32_t ticks) {
    return kStep * static_cast<std::uint32_t>(
                       std::lround(ticks * 4.0 * kUnitsPerQuarter / kOwnWholeNote / kStep));
  };
  SmfFile straight = file;
  std::uint32_t ticks = 0, now = 0;
  for (SmfNote& note : straight.tracks.front().notes) {
    now += units(note.start - std::min(ticks, note.start));
    const std::uint32_t length = note.end - note.start;
    ticks = note.end;
    note.start = now;
    now += length == kOwnDotted32 ? 3 : units(length);
    note.end = now;
  }
  const double beats = std::max(1.0, std::round(file.division * 240.0 / 385));
  straight.division = kUnitsPerQuarter;
  straight.tracks.front().tempos = {{0, static_cast<std::uint32_t>(std::lround(60e6 / beats))}};
  return straight;
}

}  // namespace tonadex::midi
