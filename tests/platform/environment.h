#pragma once

#include <cstdlib>
#include <optional>
#include <string>

namespace tonadex::test {

// Sets or unsets an environment variable until the end of the scope.
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
