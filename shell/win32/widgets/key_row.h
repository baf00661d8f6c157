#pragma once

#include <windows.h>

#include <array>
#include <functional>
#include <string_view>

#include "app/composer_keys.h"

namespace tonadex::shell {

// The phone's keys under the composer's notes. A key that the mouse keeps down for kHoldMs, or that
// is pressed with the Shift key, counts as held.
class KeyRow {
 public:
  using Pressed = std::function<void(std::string_view label, bool held)>;

  // Takes the ids from `firstId` on.
  KeyRow(HWND parent, int firstId, Pressed pressed);

  const std::array<HWND, app::kKeyCount>& windows() const { return keys_; }
  // Answers the parent's WM_COMMAND; false when the id is none of the row's.
  bool Command(int id);

 private:
  std::array<HWND, app::kKeyCount> keys_{};
  int firstId_;
  Pressed pressed_;
  ULONGLONG downSince_ = 0;  // of the key that the mouse holds
};

}  // namespace tonadex::shell
