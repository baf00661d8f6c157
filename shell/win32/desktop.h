#pragma once

#include <filesystem>
#include <string>
#include <vector>

namespace tonadex::shell {

// Runs the desktop program from the splash to its end. `server`: base address of the melody server
// from the command line, "" for none; `files`: melody files to open. Returns the exit code: 0, or 1
// after an unhandled error.
int RunDesktop(const std::string& server, std::vector<std::filesystem::path> files);

}  // namespace tonadex::shell
