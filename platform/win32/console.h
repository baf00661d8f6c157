#pragma once

#include <string>
#include <vector>

namespace tonadex::platform {

// Switches the console and the standard streams to untranslated UTF-8 for its lifetime, then
// restores the console's code pages.
class Utf8Console {
 public:
  Utf8Console();
  ~Utf8Console();
  Utf8Console(const Utf8Console&) = delete;
  Utf8Console& operator=(const Utf8Console&) = delete;

 private:
  unsigned int output_, input_;
};

// The command line's arguments in UTF-8, first the program's name.
class Utf8Arguments {
 public:
  Utf8Arguments();

  int count() const { return static_cast<int>(texts_.size()); }
  char** values() { return pointers_.data(); }

 private:
  std::vector<std::string> texts_;
  std::vector<char*> pointers_;  // into texts_, terminated by nullptr
};

}  // namespace tonadex::platform
