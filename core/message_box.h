#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace tonadex::core {

// Default title of message boxes.
inline constexpr std::string_view kDefaultTitle = "Tonadex";

enum class Icon { kNone, kInformation, kExclamation };

// One message box with an OK button. Texts are Windows-1252; CR LF or CR separates lines.
struct Message {
  std::string text;
  std::string title{kDefaultTitle};
  Icon icon = Icon::kNone;

  friend bool operator==(const Message&, const Message&) = default;
};

// Shows message boxes: in a window, on a terminal, or as a list that a batch run reads.
class MessageSink {
 public:
  virtual ~MessageSink() = default;
  // Returns when the user has closed the box.
  virtual void Show(const Message& message) = 0;
};

// Records the messages in order.
class RecordingMessages : public MessageSink {
 public:
  void Show(const Message& message) override { messages.push_back(message); }
  std::vector<Message> messages;
};

// Installs `sink` for the calling thread during its scope, then restores the previous one.
class ScopedMessageSink {
 public:
  explicit ScopedMessageSink(MessageSink& sink);
  ~ScopedMessageSink();
  ScopedMessageSink(const ScopedMessageSink&) = delete;
  ScopedMessageSink& operator=(const ScopedMessageSink&) = delete;

 private:
  friend class ScopedRecording;
  MessageSink* previous_;
};

// Records the calling thread's messages during its scope and forwards them to the previous sink.
class ScopedRecording : public RecordingMessages {
 public:
  void Show(const Message& message) override;

 private:
  ScopedMessageSink scope_{*this};
};

// Shows a message box through the calling thread's sink; without a sink it is dropped.
void MsgBox(std::string_view text, Icon icon = Icon::kNone, std::string_view title = kDefaultTitle);

}  // namespace tonadex::core
