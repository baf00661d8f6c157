#pragma once

#include <chrono>
#include <cstdlib>
#include <functional>
#include <optional>
#include <string>
#include <thread>

namespace tonadex::test {

// Waits until the condition holds; false when that takes far too long.
inline bool Eventually(const std::function<bool()>& condition) {
  const auto end = std::chrono::steady_clock::now() + std::chrono::seconds(30);
  while (!condition() && std::chrono::steady_clock::now() < end) {
    std::this_thread::sleep_for(std::chrono::milliseconds(2));
  }
  return condition();
}

// Sets an environment variable (or takes it away) until the end of the scope.
class ScopedVariable {
 public:
  ScopedVariable(std::string name, const std::optional<std::string>& value)
      : name_(std::move(name)) {
    const char* before = std::getenv(name_.c_str());
    before_ = before != nullptr ? std::optional<std::string>(before) : std::nullopt;
    Set(value);
  }
  ~ScopedVariable() { Set(before_); }
  ScopedVariable(const ScopedVariable&) = delete;
  ScopedVariable& operator=(const ScopedVariable&) = delete;

 private:
  void Set(const std::optional<std::string>& value) {
    value ? ::setenv(name_.c_str(), value->c_str(), 1) : ::unsetenv(name_.c_str());
  }

  std::string name_;
  std::optional<std::string> before_;
};

}  // namespace tonadex::test
