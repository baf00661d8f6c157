#pragma once

#include "cli/commands.h"

// The toolkit that prints and the synthesizer take the loader longer than most commands take in
// all, so a program of its own in ../libexec is linked with each.
namespace tonadex::cli {

// Becomes that program, which reads the same arguments and streams and gives the exit code. Throws
// Failure when it cannot be started.
[[noreturn]] void PlayInHelper(Context& context, const Arguments& arguments);
[[noreturn]] void PrintInHelper(Context& context, const Arguments& arguments);

}  // namespace tonadex::cli
