#pragma once

#include <string>
#include <string_view>

namespace tonadex::nokia3210 {

// The errors of a conversion as one Windows-1252 string.
class ErrorLog {
 public:
  // Adds "[source] message"; a bare CR separates entries.
  void AddError(std::string_view source, std::string_view message) {
    text_.append(text_.empty() ? "[" : "\r[").append(source).append("] ").append(message);
  }
  void Clear() { text_.clear(); }
  // "" when nothing was logged.
  const std::string& Text() const { return text_; }

 private:
  std::string text_;
};

}  // namespace tonadex::nokia3210
