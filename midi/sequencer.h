#pragma once

#include <string_view>

namespace tonadex::midi {

// A MIDI sequencer, driven by three commands in Windows-1252:
//   "open FILE type sequencer alias NAME", "play NAME notify", "close NAME".
// FILE is not quoted, so a path with a blank cannot be opened.
class Sequencer {
 public:
  virtual ~Sequencer() = default;
  // Returns at once: 0 on success, else an error number. Never throws. "close" stops the sound.
  virtual int SendString(std::string_view command) = 0;
  // Whether the melody is known to be inaudible, because there is no device or no soundfont.
  virtual bool IsSilent() const { return false; }
};

}  // namespace tonadex::midi
