#pragma once

#include <cstdint>
#include <vector>

#include "core/rtttl.h"

namespace tonadex::midi {

// When a note or a pause sounds, in ms from the beginning.
struct NoteTime {
  double start = 0;
  double end = 0;
  std::int16_t number = 0;  // from NoteNumber; kPauseNumber for a pause
};

// The times of every note and pause of a parsed melody as in its MIDI file: in whole ticks, so up
// to a few per cent off the exact lengths, and with the low seven bits of pauses of more than 127
// ticks. Pauses at the end, which the file lacks, keep their full length. Errors: those of
// MidiFileBytes, and division by zero for a tempo of 0.
std::vector<NoteTime> NoteTimes(const core::RTTTLMelody& melody);

}  // namespace tonadex::midi
