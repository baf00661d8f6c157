#pragma once

#include <windows.h>

#include <vector>

#include "app/layout.h"
#include "shell/win32/binding.h"

namespace tonadex::shell {

// What the window paints itself, around its children.
struct Frame {
  enum Kind { kBar, kCard, kField, kDisplay };
  Kind kind;
  app::Rect box;
  HWND field = nullptr;  // whose focus the frame shows

  friend bool operator==(const Frame&, const Frame&) = default;
  RECT Box() const { return {box.left, box.top, box.left + box.width, box.top + box.height}; }
};

// Gives every visible window its place in the model's tree and in the order of the Tab key, which
// is that of reading.
std::vector<Frame> LayOut(const Binding& binding, const Theme& theme, const app::Form1& form,
                          SIZE client);

}  // namespace tonadex::shell
