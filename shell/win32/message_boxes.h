#pragma once

#include <windows.h>

#include <functional>

#include "core/message_box.h"

namespace tonadex::shell {

// The system's message boxes.
class MessageBoxes : public core::MessageSink {
 public:
  // The window that owns the boxes, null for none, and what it does about each message.
  struct Owner {
    HWND window = nullptr;
    std::function<void()> opening;
    // Shows it in the window until it is dismissed; false for one that is to be a box.
    std::function<bool(const core::Message&)> showInWindow;
  };
  explicit MessageBoxes(Owner& owner) : owner_(owner) {}
  void Show(const core::Message& message) override;

 private:
  Owner& owner_;
};

}  // namespace tonadex::shell
