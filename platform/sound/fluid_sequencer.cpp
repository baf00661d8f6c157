#include "platform/sound/fluid_sequencer.h"

#include <cstddef>
#include <exception>
#include <utility>

#include "files/paths.h"
#include "files/read.h"

#include "platform/sound/sequencer_commands.h"

namespace tonadex::platform {
namespace {

// Far more than any melody needs.
constexpr std::size_t kMaxMidiBytes = std::size_t{16} << 20;

}  // namespace

FluidSequencer::FluidSequencer(SoundOptions options) : player_(MakePlayer(std::move(options))) {}

FluidSequencer::~FluidSequencer() {
  if (playback_) {
    playback_->Stop();
  }
}

int FluidSequencer::SendString(std::string_view command) try {
  const auto parsed = ParseSequencerCommand(command);
  if (!parsed) {
    return kUnknownCommand;
  }
  switch (parsed->verb) {
    case SequencerCommand::Verb::kOpen:
      return Open(parsed->file, parsed->alias);
    case SequencerCommand::Verb::kPlay:
      return Play(parsed->alias);
    case SequencerCommand::Verb::kClose:
      break;
  }
  return Close(parsed->alias);
} catch (const std::exception&) {
  return kOutOfMemory;
}

int FluidSequencer::Open(std::string_view file, std::string_view alias) {
  if (alias_) {
    return kAliasInUse;
  }
  auto bytes = files::ReadWhole(files::PathFromText(file), kMaxMidiBytes);
  if (!bytes) {
    return kMidiFileNotFound;
  }
  midi_ = *std::move(bytes);
  alias_ = alias;
  return kSequencerDone;
}

int FluidSequencer::Play(std::string_view alias) {
  if (alias_ != alias) {
    return kUnknownDevice;
  }
  if (playback_) {
    playback_->Stop();
  }
  playback_ = player_->Start(midi_);
  return kSequencerDone;
}

int FluidSequencer::Close(std::string_view alias) {
  if (alias_ != alias) {
    return kUnknownDevice;
  }
  if (playback_) {
    playback_->Stop();
  }
  playback_.reset();
  alias_.reset();
  return kSequencerDone;
}

bool FluidSequencer::IsSilent() const {
  return playback_ && playback_->IsSilent();
}

std::optional<double> FluidSequencer::PositionMs() const {
  return playback_ ? std::optional(playback_->PositionMs()) : std::nullopt;
}

}  // namespace tonadex::platform
