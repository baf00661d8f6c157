#pragma once

#include <fstream>
#include <mutex>
#include <string>
#include <string_view>

namespace tonadex::server {

enum class Stream { kOutput = 1, kError = 2 };

// Writes a line to a standard stream if that takes it at once. Nothing is written, and nobody
// waits, when it is closed or a pipe that nobody reads.
void SayLine(Stream stream, std::string_view line);

// To be called first of all: closed standard streams lead nowhere from then on (a file that is
// opened later would get their number and their lines), and writing to a pipe that its reader has
// left is an error like any other, not the end of the program.
void SecureStandardStreams();

// Lines of several threads, one after the other, on the disk at once.
class LineLog {
 public:
  // "" writes to standard error. Throws std::runtime_error when the file cannot be written.
  explicit LineLog(const std::string& file);
  void operator()(std::string_view line);
  // Opens the file anew, which may have been renamed; the old one stays when that fails.
  void Reopen();

 private:
  const std::string name_;
  std::mutex mutex_;
  std::ofstream file_;
};

}  // namespace tonadex::server
