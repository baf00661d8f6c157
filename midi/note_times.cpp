#include "midi/note_times.h"

#include "core/number.h"
#include "midi/mMidiLibOut.h"

namespace tonadex::midi {
namespace {

constexpr double kQuarterMs = 5000;  // as the tempo event states
constexpr std::int32_t kDeltaMask = 127;

// One delta byte holds 127 ticks; longer pauses are truncated, so clip them to the next note's
// start.
void CutPauses(std::vector<NoteTime>& times, double end) {
  for (auto time = times.rbegin(); time != times.rend() && time->number == kPauseNumber; ++time) {
    time->start = time->start < end ? time->start : end;
    time->end = time->end < end ? time->end : end;
  }
}

}  // namespace

std::vector<NoteTime> NoteTimes(const core::RTTTLMelody& melody) {
  const double tick = core::Divide(kQuarterMs, MidiDivision(melody.Beats));
  std::vector<NoteTime> times;
  std::int32_t now = 0;  // ticks
  std::int32_t pause = 0;
  for (const core::NoteCodes& note : melody.Notes.Codes()) {
    const std::int16_t number = NumberOf(melody.Notes, note);
    const std::int16_t ticks = TicksOf(melody.Notes, note);
    if (number == kPauseNumber) {
      times.push_back({(now + pause) * tick, (now + pause + ticks) * tick, number});
      pause += ticks;
      continue;
    }
    now += pause & kDeltaMask;
    pause = 0;
    CutPauses(times, now * tick);
    times.push_back({now * tick, (now + ticks) * tick, number});
    now += ticks;
  }
  return times;
}

}  // namespace tonadex::midi
