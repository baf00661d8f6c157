#pragma once

#include "cli/commands.h"

// Loading the libraries for printing and sound takes longer than most commands. Therefore only two
// programs in ../libexec are linked with them.
namespace tonadex::cli {

// Replaces the process by the helper program, which has the same arguments and streams and returns
// the exit code. Throws Failure when it cannot be started.
[[noreturn]] void PlayInHelper(Context& context, const Arguments& arguments);
[[noreturn]] void PrintInHelper(Context& context, const Arguments& arguments);

}  // namespace tonadex::cli
