#pragma once

#include <string>

namespace tonadex::shell {

// Runs the desktop program from the splash to its end. `server`: base address of the melody server
// from the command line, "" for none. Returns the exit code: 0, or 1 after an unhandled error.
int RunDesktop(const std::string& server);

}  // namespace tonadex::shell
