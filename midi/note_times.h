#pragma once

#include <cstdint>
#include <vector>

#include "core/rtttl.h"

namespace tonadex::midi {

// When a note or a pause sounds, in ms from the beginning.
struct NoteTime {
  double start = 0;
  double end = 0;
  std::int16_t number = 0;  // as NoteNumber gives it; kPauseNumber for a pause
};

// The times of every note and pause of a parsed melody as its MIDI file has them: in whole ticks,
// so a few per cent beside the exact lengths, and pauses of more than 127 ticks cut to the low
// seven bits. Pauses at the end, which the file has not, keep their full length. Errors: as those
// of MidiFileBytes, and division by zero for a tempo of 0.
std::vector<NoteTime> NoteTimes(const core::RTTTLMelody& melody);

}  // namespace tonadex::midi
