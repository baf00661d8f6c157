#include "platform/sound/sequencer_commands.h"

#include <algorithm>
#include <cstddef>
#include <vector>

namespace tonadex::platform {
namespace {

std::vector<std::string_view> Words(std::string_view command) {
  std::vector<std::string_view> words;
  while (true) {
    command.remove_prefix(std::min(command.find_first_not_of(' '), command.size()));
    if (command.empty()) {
      return words;
    }
    const std::size_t end = std::min(command.find(' '), command.size());
    words.push_back(command.substr(0, end));
    command.remove_prefix(end);
  }
}

}  // namespace

std::optional<SequencerCommand> ParseSequencerCommand(std::string_view command) {
  using Verb = SequencerCommand::Verb;
  const std::vector<std::string_view> words = Words(command);
  const auto is = [&words](std::size_t at, std::string_view word) { return words[at] == word; };
  if (words.size() == 6 && is(0, "open") && is(2, "type") && is(3, "sequencer") && is(4, "alias")) {
    return SequencerCommand{Verb::kOpen, words[1], words[5]};
  }
  if (words.size() == 3 && is(0, "play") && is(2, "notify")) {
    return SequencerCommand{Verb::kPlay, {}, words[1]};
  }
  if (words.size() == 2 && is(0, "close")) {
    return SequencerCommand{Verb::kClose, {}, words[1]};
  }
  return std::nullopt;
}

}  // namespace tonadex::platform
