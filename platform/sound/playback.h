#pragma once

#include <memory>
#include <string>

#include "platform/sound/sound_options.h"

namespace tonadex::platform {

// One playback of a MIDI file, for calls from one thread.
class Playback {
 public:
  virtual ~Playback() = default;
  // Stops for good and returns at once, also while the sound is still starting.
  virtual void Stop() = 0;
  // Milliseconds since the melody became audible, 0 before. Still rises after its end.
  virtual double PositionMs() const = 0;
  // Whether it is already known that nothing will be heard.
  virtual bool IsSilent() const = 0;
};

// Starts playbacks one after the other: the sound device is closed before it is opened again.
class Player {
 public:
  virtual ~Player() = default;
  // Returns at once; the device is opened in a worker thread. Without a device, a soundfont or a
  // thread nothing sounds and the position follows the clock.
  virtual std::unique_ptr<Playback> Start(std::string midiBytes) = 0;
};

// Defined by the output chosen for the build: FluidSynth or silence.
std::unique_ptr<Player> MakePlayer(SoundOptions options);

}  // namespace tonadex::platform
