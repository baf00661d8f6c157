#pragma once

#include <fstream>
#include <mutex>
#include <string>
#include <string_view>

namespace tonadex::server {

enum class Stream { kOutput = 1, kError = 2 };

// Writes a line to a standard stream without blocking. The line is dropped if the stream is closed
// or is a pipe that nobody reads.
void SayLine(Stream stream, std::string_view line);

// Call this first in main. Opens /dev/null for closed standard streams, because a file opened later
// would get their descriptor and receive their output. Ignores SIGPIPE, so that writing to a pipe
// without a reader is an error and does not end the program.
void SecureStandardStreams();

// A log file. Lines of several threads do not mix; each is flushed at once.
class LineLog {
 public:
  // `file` is a UTF-8 path; "" for standard error. Throws std::runtime_error when the file cannot
  // be opened for writing.
  explicit LineLog(const std::string& file);
  void operator()(std::string_view line);
  // Opens the file again by its name, because log rotation renames it. Keeps the open file on
  // failure.
  void Reopen();

 private:
  const std::string name_;
  std::mutex mutex_;
  std::ofstream file_;
};

}  // namespace tonadex::server
