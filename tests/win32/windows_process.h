#pragma once

#include <windows.h>

#include <filesystem>
#include <string>

namespace tonadex::test {

// The build's own files, as Windows sees them.
std::filesystem::path BuildFile(const std::filesystem::path& name);

// A folder like the one that users unpack: `program` and the data beside it.
void UnpackProgram(const std::filesystem::path& program, const std::filesystem::path& folder);

struct Finished {
  DWORD code = 0;
  std::string output;  // both streams, bytes
};

// Runs a program to its end. `arguments` is the rest of the command line; `input` is a file that
// becomes its standard input, none when empty.
Finished RunToEnd(const std::filesystem::path& program, const std::wstring& arguments,
                  const std::filesystem::path& input = {});

// A program that runs beside the test and is ended with it.
class RunningProgram {
 public:
  RunningProgram(const std::filesystem::path& program, const std::wstring& arguments = {});
  ~RunningProgram();
  RunningProgram(const RunningProgram&) = delete;
  RunningProgram& operator=(const RunningProgram&) = delete;

  DWORD id() const { return process_.dwProcessId; }
  // The exit code; 0xFFFFFFFF when it does not end in time.
  DWORD WaitForEnd(DWORD milliseconds = 60'000);

 private:
  PROCESS_INFORMATION process_{};
};

}  // namespace tonadex::test
