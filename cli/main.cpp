#include <iostream>

#include "cli/commands.h"
#ifdef _WIN32
#include "platform/win32/console.h"
#else
#include "cli/helper_programs.h"
#endif

// Where the heavy commands are done, in the order of HeavyCommands: CMakeLists.txt makes the
// program and its helpers of this one source.
int main([[maybe_unused]] int argc, [[maybe_unused]] char** argv) {
#ifdef _WIN32
  const tonadex::platform::Utf8Console console;
  tonadex::platform::Utf8Arguments arguments;
  argc = arguments.count();
  argv = arguments.values();
#endif
  std::ios::sync_with_stdio(false);
  using namespace tonadex::cli;
  return Run(argc, argv, std::cin, std::cout, std::cerr, {TONADEX_HEAVY});
}
