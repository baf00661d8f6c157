#pragma once

#include <filesystem>
#include <string>
#include <vector>

namespace tonadex::platform {

// Both lists are tried in order; the first entry that works is used.
struct SoundOptions {
  // Audio drivers as FluidSynth names them; empty: no sound. "file" is a silent device, "file:PATH"
  // one that writes the samples (16 bits, stereo, 44100 Hz, no header).
  std::vector<std::string> drivers;
  std::vector<std::filesystem::path> soundFonts;  // General MIDI
};

// The desktop's sound servers, then the sound card, and the soundfonts in their usual places.
// $TONADEX_SOUND: "ninguno" for no driver, "auto" for the default. $TONADEX_SOUNDFONT names a
// soundfont to try first.
SoundOptions SoundOptionsFromEnvironment();

}  // namespace tonadex::platform
