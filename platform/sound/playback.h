#pragma once

#include <memory>
#include <string>

#include "platform/sound/sound_options.h"

namespace tonadex::platform {

// One playback of a MIDI file. Not thread-safe.
class Playback {
 public:
  virtual ~Playback() = default;
  // Stops for good. Returns at once, even while the sound is starting.
  virtual void Stop() = 0;
  // Milliseconds since the melody became audible, 0 before; still increasing after its end.
  virtual double PositionMs() = 0;
  // Whether the melody is known to be inaudible.
  virtual bool IsSilent() = 0;
};

// Starts playbacks one at a time: the sound device is closed before it is opened again.
class Player {
 public:
  virtual ~Player() = default;
  // Returns at once; the device is opened in a worker thread. Without a device, soundfont or thread
  // there is no sound, and the position follows the clock.
  virtual std::shared_ptr<Playback> Start(std::string midiBytes) = 0;
};

// Defined by the output that the build uses: FluidSynth or silence.
std::unique_ptr<Player> MakePlayer(SoundOptions options);

}  // namespace tonadex::platform
