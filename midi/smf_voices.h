#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "midi/smf_reader.h"

// The voices of a MIDI file, one of which becomes a melody. Texts are Windows-1252.
namespace tonadex::midi {

// The notes of one channel in one track.
struct SmfVoice {
  std::size_t track = 0, channel = 0;  // counted from 0
  std::string name;                    // of the track; "" if it has none
  std::string instrument;              // Spanish; "" if the file sets none
  std::uint8_t program = kNoProgram;   // of General MIDI
  std::size_t notes = 0;               // at least 1
  int lowest = 0, highest = 0;         // MIDI keys
  bool drums = false;
  bool tune = false;  // probably the tune: one voice per file, none if it has only drums
};

// By track, then channel.
std::vector<SmfVoice> VoicesOf(const SmfFile& file);

// Why the voices of a file give no melody: the rest of a Spanish sentence about the file, "" if one
// of them is the tune.
std::string_view WhyNoTune(const std::vector<SmfVoice>& voices);

// The voice's notes by start; of simultaneous ones the highest first.
std::vector<SmfNote> NotesOf(const SmfFile& file, const SmfVoice& voice);

// A key's name like "do# 5", with the octave as in RTTTL: octave 5 starts with key 60.
std::string KeyText(int key);

// A Spanish description like "Solo, parece la melodía (Flauta), canal 1, 64 notas, de do 5 a sol
// 6".
std::string VoiceText(const SmfVoice& voice);

}  // namespace tonadex::midi
