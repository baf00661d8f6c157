#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "midi/smf_reader.h"

// The voices of a MIDI file, among which one is chosen as a melody. Texts are Windows-1252.
namespace tonadex::midi {

// The notes of one channel in one track.
struct SmfVoice {
  std::size_t track = 0, channel = 0;  // counted from 0
  std::string name;                    // the track's, "" when it has none
  std::string instrument;              // Spanish, "" when the file names none
  std::uint8_t program = kNoProgram;   // of General MIDI
  std::size_t notes = 0;               // at least 1
  int lowest = 0, highest = 0;         // MIDI keys
  bool drums = false;
  bool tune = false;  // the guess: one voice of the file, none when it has only drums
};

// In the order of tracks and channels.
std::vector<SmfVoice> VoicesOf(const SmfFile& file);

// The voice's notes in the order of their times; of those that begin together the highest first.
std::vector<SmfNote> NotesOf(const SmfFile& file, const SmfVoice& voice);

// "c5": the key in RTTTL's notation, where octave 5 begins with key 60.
std::string KeyText(int key);

// "Solo, parece la melodía (Flauta), canal 1, 64 notas, de c5 a g6"
std::string VoiceText(const SmfVoice& voice);

}  // namespace tonadex::midi
