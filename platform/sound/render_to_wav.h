#pragma once

#include <filesystem>

#include "platform/sound/sound_options.h"

namespace tonadex::platform {

enum class RenderResult {
  kDone,
  kNoMidiFile,   // missing, unreadable or no MIDI
  kNoSoundFont,  // none of the soundfonts could be loaded
  kWriteFailed,  // the sound file could not be written
  kNoSound,      // built without sound
};

// Plays a MIDI file into a sound file (WAV, 44100 Hz, stereo, 16 bits), as fast as the machine can:
// what the sequencer would have played, until the last note has faded or an hour is full. The
// drivers of `options` are not used. The sound file appears when it is complete; after a failure
// what was there is still there.
RenderResult RenderToWav(const std::filesystem::path& midiFile,
                         const std::filesystem::path& wavFile,
                         const SoundOptions& options = SoundOptionsFromEnvironment());

}  // namespace tonadex::platform
