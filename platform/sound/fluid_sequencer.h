#pragma once

#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "midi/sequencer.h"
#include "platform/sound/playback.h"
#include "platform/sound/sound_options.h"

namespace tonadex::platform {

// The sequencer on FluidSynth, one device at a time, not thread-safe. Never waits for the sound
// device and prints nothing. "open" reads the whole file.
class FluidSequencer : public midi::Sequencer {
 public:
  explicit FluidSequencer(SoundOptions options = SoundOptionsFromEnvironment());
  ~FluidSequencer() override;

  // Returns the codes of sequencer_commands.h. Missing sound is not an error.
  int SendString(std::string_view command) override;

  // Milliseconds since the melody became audible, for an animation that follows it: 0 while the
  // device is starting, by the clock without a device, still increasing after the end of the
  // melody. nullopt when nothing was played since the last "close".
  std::optional<double> PositionMs() const;

  // Whether the melody is known to be inaudible: no device, no soundfont, or sound disabled. False
  // while the device is starting.
  bool IsSilent() const override;

 private:
  int Open(std::string_view file, std::string_view alias);
  int Play(std::string_view alias);
  int Close(std::string_view alias);

  std::unique_ptr<Player> player_;
  std::optional<std::string> alias_;  // of the open device
  std::string midi_;                  // bytes of its file
  std::shared_ptr<Playback> playback_;
};

}  // namespace tonadex::platform
