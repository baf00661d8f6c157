#include "platform/win32/mci_sequencer.h"

#include <windows.h>

#include <mmsystem.h>

namespace tonadex::platform {
namespace {

int SendToSystem(const std::string& command) {
  return static_cast<int>(mciSendStringA(command.c_str(), nullptr, 0, nullptr));
}

}  // namespace

MciSequencer::MciSequencer(Send send) : send_(send ? std::move(send) : SendToSystem) {}

int MciSequencer::SendString(std::string_view command) {
  const int result = send_(std::string(command));
  const bool plays = command.starts_with("play ");
  silent_ = plays && result != 0;
  if (plays && result == 0) {
    started_ = GetTickCount64();
  } else {
    started_.reset();
  }
  return result;
}

std::optional<double> MciSequencer::PositionMs() const {
  if (!started_) {
    return std::nullopt;
  }
  return static_cast<double>(GetTickCount64() - *started_);
}

}  // namespace tonadex::platform
