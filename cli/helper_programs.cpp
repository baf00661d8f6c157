#include "cli/helper_programs.h"

#include <unistd.h>

#include "platform/posix/program_folder.h"

namespace tonadex::cli {
namespace {

[[noreturn]] void Become(const char* name, const Arguments& arguments) {
  const std::filesystem::path program = platform::InstallPrefix() / "libexec" / name;
  ::execv(program.c_str(), const_cast<char* const*>(arguments.typed));
  throw Failure{ExitCode::kSystemFailed, "no se puede arrancar el programa «" + program.string() +
                                             "»; vuelve a instalar Tonadex"};
}

}  // namespace

void PlayInHelper(Context& /*context*/, const Arguments& arguments) {
  Become("tonadex-reproducir", arguments);
}

void PrintInHelper(Context& /*context*/, const Arguments& arguments) {
  Become("tonadex-imprimir", arguments);
}

}  // namespace tonadex::cli
