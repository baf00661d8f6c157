#pragma once

#include <filesystem>
#include <memory>
#include <string>
#include <vector>

namespace tonadex::shell {

// One run of the desktop program, from the splash to its end. Needs a QApplication.
class Desktop {
 public:
  // `server`: base address of the melody server from the command line, "" for none. `files`: melody
  // files to open.
  Desktop(const std::string& server, std::vector<std::filesystem::path> files);
  ~Desktop();

  // The exit code: 0, or 1 after an error that nothing handled.
  int Run();

 private:
  struct Parts;
  std::unique_ptr<Parts> parts_;
};

}  // namespace tonadex::shell
