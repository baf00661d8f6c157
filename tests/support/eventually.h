#pragma once

#include <chrono>
#include <functional>
#include <thread>

namespace tonadex::test {

// Waits until the condition holds; false after a minute, which a busy machine may need.
inline bool Eventually(const std::function<bool()>& condition) {
  const auto end = std::chrono::steady_clock::now() + std::chrono::seconds(60);
  while (!condition() && std::chrono::steady_clock::now() < end) {
    std::this_thread::sleep_for(std::chrono::milliseconds(2));
  }
  return condition();
}

}  // namespace tonadex::test
