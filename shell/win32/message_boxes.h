#pragma once

#include <windows.h>

#include <functional>

#include "core/message_box.h"

namespace tonadex::shell {

// The system's message boxes.
class MessageBoxes : public core::MessageSink {
 public:
  // The window that owns the boxes, null for none, and callbacks around each box.
  struct Owner {
    HWND window = nullptr;
    std::function<void()> opening, closed;
    std::function<void(HWND box)> place;  // created, not yet shown
  };
  explicit MessageBoxes(Owner& owner) : owner_(owner) {}
  void Show(const core::Message& message) override;

 private:
  Owner& owner_;
};

}  // namespace tonadex::shell
