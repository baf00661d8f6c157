#pragma once

#include <string>

namespace tonadex::shell {

// One run of the desktop program, from the splash to its end. `server`: base address of the melody
// server from the command line, "" for none. The exit code: 0, or 1 after an error that nothing
// handled.
int RunDesktop(const std::string& server);

}  // namespace tonadex::shell
