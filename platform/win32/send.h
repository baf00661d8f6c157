#pragma once

#include <windows.h>

#include <type_traits>

namespace tonadex::platform {

// SendMessageW with integers of any type and pointers as arguments.
template <typename Wide = WPARAM, typename Data = LPARAM>
LRESULT Send(HWND window, UINT message, Wide wide = 0, Data data = 0) {
  const auto parameter = [](auto value) {
    if constexpr (std::is_pointer_v<decltype(value)>) {
      return reinterpret_cast<LPARAM>(value);
    } else {
      return static_cast<LPARAM>(value);
    }
  };
  return SendMessageW(window, message, static_cast<WPARAM>(parameter(wide)), parameter(data));
}

}  // namespace tonadex::platform
