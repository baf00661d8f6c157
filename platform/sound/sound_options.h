#pragma once

#include <filesystem>
#include <string>
#include <vector>

namespace tonadex::platform {

// Both lists are tried in order; the first entry that works is used.
struct SoundOptions {
  // FluidSynth's names of audio drivers; empty: no sound. "file" is a silent device, "file:PATH"
  // writes the samples to a file (16 bits, stereo, 44100 Hz, no header).
  std::vector<std::string> drivers;
  std::vector<std::filesystem::path> soundFonts;  // General MIDI
};

// The desktop's sound servers, then the sound card, and the soundfonts in their usual places.
// $TONADEX_SOUND: "ninguno" for no driver, "auto" for the default. $TONADEX_SOUNDFONT is a
// soundfont to try first.
SoundOptions SoundOptionsFromEnvironment();

}  // namespace tonadex::platform
