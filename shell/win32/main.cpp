#include <windows.h>

#include <filesystem>
#include <string>
#include <utility>
#include <vector>

#include "platform/win32/console.h"
#include "platform/win32/wide_text.h"
#include "shell/win32/desktop.h"

namespace {

constexpr int kBadArguments = 2;
constexpr char kUsage[] =
    "Uso: tonadex [--servidor URL] [FICHERO…]\n\n"
    "FICHERO         Melodía de cualquier formato, para abrirla.\n"
    "--servidor URL  Dirección del servidor de melodías; sin ella, el del programa.\n"
    "--help          Muestra esta ayuda.\n"
    "--version       Muestra la versión.\n";

void Say(const std::string& words, UINT icon) {
  MessageBoxW(nullptr, tonadex::platform::WideFromUtf8(words).c_str(), L"Tonadex", MB_OK | icon);
}

}  // namespace

int WINAPI wWinMain(HINSTANCE, HINSTANCE, wchar_t*, int) {
  tonadex::platform::Utf8Arguments arguments;
  std::string server;
  std::vector<std::filesystem::path> files;
  for (int i = 1; i < arguments.count(); ++i) {
    const std::string argument = arguments.values()[i];
    if (argument == "--servidor" && i + 1 < arguments.count()) {
      server = arguments.values()[++i];
    } else if (argument.starts_with("--servidor=")) {
      server = argument.substr(argument.find('=') + 1);
    } else if (argument == "--version") {
      Say("Tonadex " TONADEX_VERSION, MB_ICONINFORMATION);
      return 0;
    } else if (argument == "--help" || argument == "-h" || argument == "--ayuda") {
      Say(kUsage, MB_ICONINFORMATION);
      return 0;
    } else if (!argument.starts_with('-')) {
      files.emplace_back(tonadex::platform::WideFromUtf8(argument));
    } else {
      Say("No se entiende: " + argument + "\n\n" + kUsage, MB_ICONEXCLAMATION);
      return kBadArguments;
    }
  }
  return tonadex::shell::RunDesktop(server, std::move(files));
}
