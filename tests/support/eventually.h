#pragma once

#include <chrono>
#include <functional>
#include <thread>

namespace tonadex::test {

// Asks until the condition holds; false after a minute, which a busy machine may need.
inline bool Eventually(const std::function<bool()>& condition) {
  const auto end = std::chrono::steady_clock::now() + std::chrono::seconds(60);
  bool holds = condition();
  while (!holds && std::chrono::steady_clock::now() < end) {
    std::this_thread::sleep_for(std::chrono::milliseconds(5));
    holds = condition();
  }
  return holds;
}

}  // namespace tonadex::test
