#include "platform/message_box.h"

#include <utility>

namespace tonadex::platform {
namespace {

thread_local MessageSink* currentSink = nullptr;

}  // namespace

ScopedMessageSink::ScopedMessageSink(MessageSink& sink)
    : previous_(std::exchange(currentSink, &sink)) {}

ScopedMessageSink::~ScopedMessageSink() {
  currentSink = previous_;
}

void ScopedRecording::Show(const Message& message) {
  RecordingMessages::Show(message);
  if (scope_.previous_ != nullptr) {
    scope_.previous_->Show(message);
  }
}

void MsgBox(std::string_view text, Icon icon, std::string_view title) {
  if (currentSink != nullptr) {
    currentSink->Show({std::string(text), std::string(title), icon});
  }
}

}  // namespace tonadex::platform
