#pragma once

#include <filesystem>

#include "platform/sound/sound_options.h"

namespace tonadex::platform {

enum class RenderResult {
  kDone,
  kNoMidiFile,   // missing, unreadable or not MIDI
  kNoSoundFont,  // none of the soundfonts could be loaded
  kWriteFailed,  // the sound file could not be written
  kNoSound,      // built without sound
};

// Renders a MIDI file to a sound file (WAV, 44100 Hz, stereo, 16 bits) as the sequencer would play
// it, until the last note has faded, for at most an hour. The drivers in `options` are not used.
// The sound file is replaced atomically: on failure the old one remains.
RenderResult RenderToWav(const std::filesystem::path& midiFile,
                         const std::filesystem::path& wavFile,
                         const SoundOptions& options = SoundOptionsFromEnvironment());

}  // namespace tonadex::platform
