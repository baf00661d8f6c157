#pragma once

#include <memory>
#include <string>

#include "platform/sound/sound_options.h"

namespace tonadex::platform {

// One sounding of a MIDI file. All calls come from one thread.
class Playback {
 public:
  virtual ~Playback() = default;
  // Silences it for good and returns at once, also while the sound is still starting.
  virtual void Stop() = 0;
  // Milliseconds since the melody began to be heard, 0 before. Runs on behind its end.
  virtual double PositionMs() const = 0;
  // Whether it is known by now that nothing will be heard.
  virtual bool IsSilent() const = 0;
};

// Starts playbacks one after the other: a sound device is given back before the next one asks.
class Player {
 public:
  virtual ~Player() = default;
  // Returns at once; the device is opened behind the caller's back. Without a device, a soundfont
  // or a thread nothing sounds and the position follows the clock.
  virtual std::unique_ptr<Playback> Start(std::string midiBytes) = 0;
};

// Defined by the output that is built in: FluidSynth or silence.
std::unique_ptr<Player> MakePlayer(SoundOptions options);

}  // namespace tonadex::platform
