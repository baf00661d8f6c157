#pragma once

#include <string>
#include <vector>

namespace tonadex::platform {

// Makes the process's console and standard streams carry UTF-8 bytes untranslated while it lives;
// the console's own setting comes back at the end.
class Utf8Console {
 public:
  Utf8Console();
  ~Utf8Console();
  Utf8Console(const Utf8Console&) = delete;
  Utf8Console& operator=(const Utf8Console&) = delete;

 private:
  unsigned int output_, input_;
};

// The command line's arguments as the user typed them, in UTF-8, the program's name first.
class Utf8Arguments {
 public:
  Utf8Arguments();

  int count() const { return static_cast<int>(texts_.size()); }
  char** values() { return pointers_.data(); }

 private:
  std::vector<std::string> texts_;
  std::vector<char*> pointers_;  // of texts_, and a null behind them
};

}  // namespace tonadex::platform
