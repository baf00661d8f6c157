#pragma once

#include <windows.h>

#include <array>
#include <functional>
#include <optional>
#include <string_view>

#include "app/composer_keys.h"
#include "shell/win32/theme.h"

namespace tonadex::shell {

// The phone's keys under the composer's notes, and one more that stays down. A key counts as held
// while that one is down, when the mouse keeps it down for kHoldMs, or together with Shift.
class KeyRow {
 public:
  using Pressed = std::function<void(std::string_view label, bool held)>;

  KeyRow(HWND parent, int id, const Theme& theme, Pressed pressed);

  HWND window() const { return window_; }
  // Tells tooltips of each key and its words.
  void ForEachKey(const std::function<void(HWND key, std::string_view help)>& told) const;
  // One row where every key's word has room, else two.
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
  ULONGLONG downSince_ = 0;  // of the key that the mouse holds
};

}  // namespace tonadex::shell
