#pragma once

#include <optional>
#include <string_view>

namespace tonadex::platform {

// Results of Sequencer::SendString, with the numbers of MCI.
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

// Parses "open FILE type sequencer alias NAME", "play NAME notify" or "close NAME". Blanks separate
// the words and there are no quotes, so a command whose FILE contains a blank is not recognised.
// The strings are views of `command`.
std::optional<SequencerCommand> ParseSequencerCommand(std::string_view command);

}  // namespace tonadex::platform
