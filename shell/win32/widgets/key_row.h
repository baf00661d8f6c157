#pragma once

#include <windows.h>

#include <array>
#include <functional>
#include <optional>
#include <string_view>

#include "app/composer_keys.h"
#include "shell/win32/theme.h"

namespace tonadex::shell {

// The phone's keys under the composer's notes, and a key that locks. A key counts as held while
// that one is locked, when the mouse presses it for kHoldMs, or together with Shift.
class KeyRow {
 public:
  using Pressed = std::function<void(std::string_view label, bool held)>;

  KeyRow(HWND parent, int id, const Theme& theme, Pressed pressed);

  HWND window() const { return window_; }
  // Calls `visit` with each key and its help text (Windows-1252).
  void ForEachKey(const std::function<void(HWND key, std::string_view help)>& visit) const;
  // In pixels: of one row if the word of each key fits into it, else of two.
  int Height(int width) const;

 private:
  std::optional<LRESULT> Handle(UINT message, WPARAM wide, LPARAM data);
  int Rows(int width) const;
  void LayOut();
  void Press(std::size_t index);

  static constexpr std::size_t kCount = app::kKeyCount + 1;
  HWND window_;
  std::array<HWND, kCount> keys_{};
  const Theme& theme_;
  Pressed pressed_;
  bool hold_ = false;
  ULONGLONG downSince_ = 0;  // when the mouse pressed a key
};

}  // namespace tonadex::shell
