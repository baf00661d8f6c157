#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "core/rtttl_writer.h"
#include "midi/smf_voices.h"

// Converts one voice of a MIDI file to a melody for a phone. Texts are Windows-1252.
//
// Every note starts at the thirty-second nearest to its time in the file, counted from the file's
// beginning, so errors do not add up and triplets stay in their bar. It gets the longest plain or
// dotted length that fits; the rest until the next note becomes pauses, because RTTTL has no ties.
// A silence shorter than a sixteenth, or of at most a quarter of the time to the next note, is
// articulation and not written as a pause. Pauses before the first note and after the last are left
// out.
//
// Times are in beats, so tempo changes do not move notes; the melody gets the tempo that applies
// for the longest time. Tempo and lengths may be doubled or halved together if this loses fewer
// notes or makes the text shorter.
namespace tonadex::midi {

enum class Taken { kHighest, kFirst };  // which note to keep of simultaneous ones

struct SmfChoice {
  std::string name;           // of the melody
  std::size_t firstBar = 0;   // counted from 1; 0 for the first bar with a note
  std::size_t mostNotes = 0;  // maximum number of notes and pauses; 0 for the maximum of a melody
  Taken taken = Taken::kHighest;
  int lowestOctave = 1, octaves = 8;  // the phone's range; notes outside are moved
};

struct SmfMelody {
  core::PlainMelody melody;          // without notes if none starts in the chosen bars
  std::size_t firstBar = 0;          // counted from 1
  std::size_t lastBar = 0;           // last bar of the melody
  std::size_t bars = 0;              // number of bars of the voice
  std::vector<std::string> remarks;  // Spanish sentences: how the melody differs from the voice
};

SmfMelody MelodyOf(const SmfFile& file, const SmfVoice& voice, const SmfChoice& choice);

}  // namespace tonadex::midi
