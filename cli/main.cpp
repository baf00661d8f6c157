#include <iostream>

#include "cli/commands.h"
#ifdef _WIN32
#include "platform/win32/console.h"
#else
#include "cli/helper_programs.h"
#endif

// TONADEX_HEAVY is the initialiser of HeavyCommands: CMakeLists.txt builds the program and its
// helpers from this source.
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
