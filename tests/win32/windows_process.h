#pragma once

#include <windows.h>

#include <filesystem>
#include <string>

namespace tonadex::test {

// Paths of the build in Windows' form.
std::filesystem::path BuildFile(const std::filesystem::path& name);

// Creates a folder like the unpacked one: `program` with its data beside it.
void UnpackProgram(const std::filesystem::path& program, const std::filesystem::path& folder);

struct Finished {
  DWORD code = 0;
  std::string output;  // both streams, as bytes
};

// Runs a program to its end. `arguments` is the rest of the command line; `input` is a file for its
// standard input, none when empty.
Finished RunToEnd(const std::filesystem::path& program, const std::wstring& arguments,
                  const std::filesystem::path& input = {});

// A program that runs during the test and is killed with it.
class RunningProgram {
 public:
  RunningProgram(const std::filesystem::path& program, const std::wstring& arguments = {});
  ~RunningProgram();
  RunningProgram(const RunningProgram&) = delete;
  RunningProgram& operator=(const RunningProgram&) = delete;

  DWORD id() const { return process_.dwProcessId; }
  // The exit code; 0xFFFFFFFF after a time-out.
  DWORD WaitForEnd(DWORD milliseconds = 60'000);

 private:
  PROCESS_INFORMATION process_{};
};

}  // namespace tonadex::test
