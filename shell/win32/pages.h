#pragma once

#include <windows.h>

#include <vector>

#include "app/layout.h"
#include "shell/win32/binding.h"

namespace tonadex::shell {

// A bar, card or frame that the window paints around its children.
struct Frame {
  enum Kind { kBar, kCard, kField, kDisplay };
  Kind kind;
  app::Rect box;
  HWND field = nullptr;  // the frame shows this window's focus

  friend bool operator==(const Frame&, const Frame&) = default;
  RECT Box() const { return {box.left, box.top, box.left + box.width, box.top + box.height}; }
};

// The height that the page and its bars need in a window this wide.
int NeededHeight(const Binding& binding, const Theme& theme, const app::Form1& form, int width);
// Places each visible window by the model's layout tree, moved up by `scrolled`, and puts the
// windows into reading order, which is the order of the Tab key.
std::vector<Frame> LayOut(const Binding& binding, const Theme& theme, const app::Form1& form,
                          SIZE size, int scrolled);

}  // namespace tonadex::shell
