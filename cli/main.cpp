#include <iostream>

#include "cli/context.h"
#ifdef _WIN32
#include "platform/win32/console.h"
#endif

int main([[maybe_unused]] int argc, [[maybe_unused]] char** argv) {
#ifdef _WIN32
  const tonadex::platform::Utf8Console console;
  tonadex::platform::Utf8Arguments arguments;
  argc = arguments.count();
  argv = arguments.values();
#endif
  std::ios::sync_with_stdio(false);
  return tonadex::cli::Run(argc, argv, std::cin, std::cout, std::cerr);
}
