#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace tonadex::platform {

// Title of every message box that names no other.
inline constexpr std::string_view kDefaultTitle = "Tonadex";

enum class Icon { kNone, kInformation, kExclamation };

// One message box with an OK button. Texts are Windows-1252; lines are parted by CR LF or CR.
struct Message {
  std::string text;
  std::string title{kDefaultTitle};
  Icon icon = Icon::kNone;

  friend bool operator==(const Message&, const Message&) = default;
};

// Whoever shows message boxes: a window, a terminal, or a list that a batch run reads.
class MessageSink {
 public:
  virtual ~MessageSink() = default;
  // Returns when the user has closed the box.
  virtual void Show(const Message& message) = 0;
};

// Keeps the messages in the order in which they would have been shown.
class RecordingMessages : public MessageSink {
 public:
  void Show(const Message& message) override { messages.push_back(message); }
  std::vector<Message> messages;
};

// Installs `sink` for the calling thread until the end of the scope, then puts the previous back.
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

// Records the calling thread's messages of its scope and lets them through to the sink before it.
class ScopedRecording : public RecordingMessages {
 public:
  void Show(const Message& message) override;

 private:
  ScopedMessageSink scope_{*this};
};

// Shows a message box through the calling thread's sink; with none installed it is dropped.
void MsgBox(std::string_view text, Icon icon = Icon::kNone, std::string_view title = kDefaultTitle);

}  // namespace tonadex::platform
