#pragma once

#include <windows.h>

#include <vector>

#include "app/layout.h"
#include "shell/win32/binding.h"

namespace tonadex::shell {

inline RECT AsRect(const app::Rect& box) {
  return {box.left, box.top, box.left + box.width, box.top + box.height};
}

// A bar, card or frame that the window paints around its children.
struct Frame {
  enum Kind { kBar, kCard, kField, kDisplay };
  Kind kind;
  app::Rect box, view;   // the view is the part of the window that may show it
  HWND field = nullptr;  // the frame shows this window's focus

  friend bool operator==(const Frame&, const Frame&) = default;
  RECT Box() const { return AsRect(box); }
};

// The height that the page and its bars need in a window this wide.
int NeededHeight(const Binding& binding, const Theme& theme, const app::Form1& form, int width);
// Places each visible window by the model's layout tree, those of the page moved up by `scrolled`,
// and puts the windows into reading order, which is the order of the Tab key.
std::vector<Frame> LayOut(const Binding& binding, const Theme& theme, const app::Form1& form,
                          SIZE size, int scrolled);
// By how many pixels more the page must be scrolled to show a control; negative: less.
int HiddenPart(const Binding& binding, const Theme& theme, const app::Form1& form, SIZE size,
               int scrolled, const BoundControl& control);

}  // namespace tonadex::shell
