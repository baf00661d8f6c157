#pragma once

#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "midi/sequencer.h"
#include "platform/sound/playback.h"
#include "platform/sound/sound_options.h"

namespace tonadex::platform {

// The sequencer on FluidSynth. One device at a time; every call comes from one thread, none waits
// for the sound device and nothing is printed. "open" reads the file, which may change afterwards.
class FluidSequencer : public midi::Sequencer {
 public:
  explicit FluidSequencer(SoundOptions options = SoundOptionsFromEnvironment());
  ~FluidSequencer() override;

  // The numbers of sequencer_commands.h. A machine without sound is no error.
  int SendString(std::string_view command) override;

  // Milliseconds since the melody began to be heard, for a drawing that follows it: 0 while the
  // device is starting, by the clock where there is none, and running on when the melody has
  // ended. None when nothing was played or it was closed.
  std::optional<double> PositionMs() const;

  // Whether what plays will not be heard: no device, no soundfont, or sound switched off. False
  // while the device is starting.
  bool IsSilent() const;

 private:
  int Open(std::string_view file, std::string_view alias);
  int Play(std::string_view alias);
  int Close(std::string_view alias);

  std::unique_ptr<Player> player_;
  std::optional<std::string> alias_;  // of the open device
  std::string midi_;                  // bytes of its file
  std::unique_ptr<Playback> playback_;
};

}  // namespace tonadex::platform
