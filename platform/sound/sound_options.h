#pragma once

#include <filesystem>
#include <string>
#include <vector>

namespace tonadex::platform {

// How the sequencer sounds. Both lists are tried in their order, the first that works is used.
struct SoundOptions {
  // FluidSynth's names; empty: no sound. "file" is a silent device that keeps time, "file:PATH" one
  // that writes what it hears (16 bits, stereo, 44100 Hz, no header).
  std::vector<std::string> drivers;
  std::vector<std::filesystem::path> soundFonts;  // General MIDI
};

// The sound servers of the desktop, then the card itself, and the soundfonts at their usual places.
// $TONADEX_SOUND set to "ninguno" leaves no driver ("auto" is what holds without it);
// $TONADEX_SOUNDFONT names a soundfont to be tried first.
SoundOptions SoundOptionsFromEnvironment();

}  // namespace tonadex::platform
