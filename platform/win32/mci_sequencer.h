#pragma once

#include <functional>
#include <optional>
#include <string>

#include "midi/sequencer.h"

namespace tonadex::platform {

// The system's MIDI sequencer, driven by MCI command strings.
class MciSequencer : public midi::Sequencer {
 public:
  // Sends a command and returns 0 or an MCI error number. The default is mciSendStringA.
  using Send = std::function<int(const std::string& command)>;
  explicit MciSequencer(Send send = {});

  int SendString(std::string_view command) override;
  // How long the melody has been playing, in ms; nullopt when nothing plays.
  std::optional<double> PositionMs() const;
  bool IsSilent() const override { return silent_; }

 private:
  Send send_;
  std::optional<unsigned long long> started_;
  bool silent_ = false;
};

}  // namespace tonadex::platform
