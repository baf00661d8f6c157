#pragma once

#include <cstdint>
#include <vector>

#include "core/rtttl.h"

namespace tonadex::midi {

// When a note or a pause sounds, in ms since the beginning of the melody.
struct NoteTime {
  double start = 0;
  double end = 0;
  std::int16_t number = 0;  // from NoteNumber; kPauseNumber for a pause
};

// The times of every note and pause of a parsed melody as in its MIDI file: in whole ticks, so up
// to a few per cent off the exact lengths, and with pauses of more than 127 ticks truncated to
// their low seven bits. Pauses at the end, which the file lacks, have their full length. Errors:
// those of MidiFileBytes; division by zero for a tempo of 0.
std::vector<NoteTime> NoteTimes(const core::RTTTLMelody& melody);

}  // namespace tonadex::midi
