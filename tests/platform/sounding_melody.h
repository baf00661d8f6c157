#pragma once

#include <filesystem>
#include <string>
#include <string_view>

#include "core/rtttl.h"
#include "files/paths.h"
#include "midi/mMidiLibOut.h"

namespace tonadex::test {

inline constexpr std::int16_t kPiano = 0;  // a clear pitch, unlike the program's default instrument

// Adjacent notes differ in pitch, and none is too short to be measured. At tempo 100 the file has
// 160 ticks per five seconds: 31.25 ms each.
inline constexpr std::string_view kMelody = "x:d=4,o=5,b=100:c,8d#.6,2p,a4,8b,32p,16g#.,2c6";

// Writes the melody as a MIDI file, the way the program does.
inline std::int16_t WriteMelody(const std::filesystem::path& file, std::string_view text = kMelody,
                                std::int16_t instrument = kPiano) {
  core::RTTTLMelody melody;
  core::InitMelody(melody, "/nowhere/");
  melody.Text = text;
  melody.Instrument = instrument;
  core::ParseRTTTL(melody);
  melody.FileName = files::TextFromPath(file);
  return midi::WriteMidiFile(melody);
}

}  // namespace tonadex::test
