#pragma once

#include <cstdint>

namespace tonadex::formats {

// Divides `value` by 2 `count` times, each time rounding towards 0.
constexpr std::int32_t ShiftRight(std::int32_t value, int count) {
  for (int i = 0; i < count && value != 0; ++i) {
    value /= 2;
  }
  return value;
}

}  // namespace tonadex::formats
