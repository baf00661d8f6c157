#pragma once

#include <optional>
#include <string_view>

namespace tonadex::platform {

// Results of Sequencer::SendString, numbered as multimedia systems number them.
inline constexpr int kSequencerDone = 0;
inline constexpr int kUnknownCommand = 261;
inline constexpr int kUnknownDevice = 263;
inline constexpr int kMidiFileNotFound = 275;
inline constexpr int kOutOfMemory = 277;
inline constexpr int kAliasInUse = 289;

struct SequencerCommand {
  enum class Verb { kOpen, kPlay, kClose };
  Verb verb = Verb::kClose;
  std::string_view file;  // of "open"
  std::string_view alias;
};

// Reads "open FILE type sequencer alias NAME", "play NAME notify" or "close NAME". The words are
// parted by blanks and there are no quotation marks, so a FILE that holds a blank makes it none of
// them. The texts look into `command`.
std::optional<SequencerCommand> ParseSequencerCommand(std::string_view command);

}  // namespace tonadex::platform
