#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "core/rtttl_writer.h"
#include "midi/smf_voices.h"

// Makes one voice of a MIDI file a melody for a phone. Texts are Windows-1252.
//
// Every note begins at the thirty-second nearest to its time in the file, counted from the file's
// beginning, so errors do not add up and triplets keep their bar. It lasts as long as one plain or
// dotted length can say; the rest until the next note is pauses, because RTTTL has no ties. A
// silence shorter than a sixteenth, or than a quarter of the time to the next note, is the player's
// touch and no pause. The pauses before the first note and after the last are left out.
//
// Times are in beats, so changes of tempo do not move notes; the melody has the tempo that lasts
// longest in it. Tempo and lengths may both be doubled or halved, where this loses fewer notes or
// makes the text shorter.
namespace tonadex::midi {

enum class Taken { kHighest, kFirst };  // of notes that sound at once

struct SmfChoice {
  std::string name;           // of the melody
  std::size_t firstBar = 0;   // counted from 1; 0 for the first bar with a note
  std::size_t mostNotes = 0;  // notes and pauses, 0 for all that a melody can have
  Taken taken = Taken::kHighest;
  int lowestOctave = 1, octaves = 8;  // the phone's; what lies outside is moved
};

struct SmfMelody {
  core::PlainMelody melody;          // without notes when none begins in the bars
  std::size_t firstBar = 0;          // counted from 1
  std::size_t lastBar = 0;           // of the melody
  std::size_t bars = 0;              // of the voice
  std::vector<std::string> remarks;  // what the melody lacks of the voice, sentences in Spanish
};

SmfMelody MelodyOf(const SmfFile& file, const SmfVoice& voice, const SmfChoice& choice);

}  // namespace tonadex::midi
