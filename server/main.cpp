#include <CLI/CLI.hpp>
#include <exception>
#include <iostream>
#include <memory>
#include <stop_token>
#include <string>

#include "cli/terminal_words.h"
#include "core/error_words.h"
#include "core/windows1252.h"
#include "server/embedded_server.h"
#include "server/file_system.h"
#include "server/http_server.h"
#include "server/line_log.h"
#include "server/shelf.h"
#ifdef _WIN32
#include "platform/win32/console.h"
#include "platform/win32/program_folder.h"
#else
#include "platform/posix/program_folder.h"
#endif

namespace {

namespace fs = std::filesystem;
using namespace tonadex::server;

// Exit codes: 0 ended by a signal, 1 could not start, 2 wrong arguments.
constexpr int kCannotStart = 1;
constexpr int kWrongArguments = 2;
constexpr std::uint16_t kDefaultPort = 8080;

struct Arguments {
  ServerOptions server;
  std::string folder;
  std::string logFile;
  std::string firstMelodies;
};

void AddArguments(CLI::App& app, Arguments& arguments) {
  // The desktop program's own place, so that both share their melodies.
  arguments.folder = (tonadex::platform::ProgramFolderPath() / "servidor").string();
  const fs::path installed = tonadex::platform::InstalledData();
  arguments.firstMelodies = installed.empty() ? "" : (installed / "servidor").string();
  arguments.server.port = kDefaultPort;
  app.add_option("--puerto", arguments.server.port, "Puerto en el que escucha (0: uno libre)")
      ->type_name("PUERTO")
      ->capture_default_str();
  app.add_option("--direccion", arguments.server.address,
                 "Dirección numérica en la que escucha; 0.0.0.0 para todas")
      ->type_name("DIRECCIÓN")
      ->capture_default_str();
  app.add_option("--carpeta", arguments.folder, "Carpeta de las melodías")
      ->type_name("CARPETA")
      ->capture_default_str();
  app.add_option("--registro", arguments.logFile,
                 "Fichero al que se añade una línea por petición (si falta, la salida de errores)")
      ->type_name("FICHERO");
  app.add_option("--estanteria", arguments.firstMelodies,
                 "Melodías con las que se llena una carpeta vacía")
      ->type_name("CARPETA")
      ->capture_default_str();
  app.add_flag("--proxy", arguments.server.behindProxy,
               "Hay un proxy delante: la dirección del cliente es la última de X-Forwarded-For");
}

void Reload(Shelf& shelf, const std::stop_token& stop) {
  try {
    if (shelf.Reload(stop)) {
      SayLine(Stream::kOutput,
              "Carpeta leída de nuevo: " + std::to_string(shelf.size()) + " melodías");
    }
  } catch (const std::exception& error) {  // what was there is served on
    SayLine(Stream::kError,
            "tonadex-server: " + tonadex::core::ToUtf8(tonadex::core::ErrorWords(error)));
  }
}

// The lock of a folder that we may write to; none where the lock cannot be made (a read-only mount,
// a folder of somebody else's), and nothing needs to be kept from writing then.
std::unique_ptr<FolderLock> LockUnlessReadOnly(const std::string& folder) {
  std::unique_ptr<FolderLock> lock;
  try {
    lock = FolderLock::Try(folder);
  } catch (const fs::filesystem_error&) {
    return nullptr;
  }
  if (!lock) {
    throw std::runtime_error("otro programa usa ya la carpeta «" + folder + "»");
  }
  return lock;
}

void Serve(Arguments arguments) {
  const fs::path folder = arguments.folder;
  fs::create_directories(folder);
  const auto lock = LockUnlessReadOnly(arguments.folder);
  LineLog log(arguments.logFile);
  RaiseOpenFileLimit();
  if (lock) {
    FillEmptyShelf(folder, arguments.firstMelodies);
  }
  Shelf shelf(folder, lock ? ShelfAccess::kReadWrite : ShelfAccess::kReadOnly);
  arguments.server.log = [&log](std::string_view line) { log(line); };
  HttpServer server(arguments.server, [&shelf](const Request& r) { return Handle(r, shelf); });
  const auto announce = [&] {
    if (!lock || !PublishPort(folder, server.Port())) {
      SayLine(Stream::kError, "tonadex-server: aviso: no se puede escribir en la carpeta «" +
                                  arguments.folder + "»; se sirve lo que hay");
    }
    SayLine(Stream::kOutput, "Tonadex " TONADEX_VERSION ": " + std::to_string(shelf.size()) +
                                 " melodías en http://" + arguments.server.address + ":" +
                                 std::to_string(server.Port()) + "/");
  };
  WaitForEndSignal(announce, [&shelf](const std::stop_token& stop) { Reload(shelf, stop); });
  if (lock) {
    WithdrawPort(folder);
  }
}

}  // namespace

int main([[maybe_unused]] int argc, [[maybe_unused]] char** argv) {
  SecureStandardStreams();
#ifdef _WIN32
  const tonadex::platform::Utf8Console console;
  tonadex::platform::Utf8Arguments given;
  argc = given.count();
  argv = given.values();
#endif
  CLI::App app("Servidor de melodías de Tonadex", "tonadex-server");
  app.set_version_flag("--version", "tonadex-server " TONADEX_VERSION, "Muestra la versión");
  Arguments arguments;
  AddArguments(app, arguments);
  tonadex::cli::TranslateHelp(app);
  try {
    app.parse(argc, argv);
    Serve(arguments);
  } catch (const CLI::Success& success) {  // --help, --version
    return app.exit(success);
  } catch (const CLI::ParseError& error) {
    std::cerr << "tonadex-server: " << tonadex::cli::UseError(error)
              << "\nPrueba «tonadex-server --help»." << std::endl;
    return kWrongArguments;
  } catch (const std::exception& error) {
    std::cerr << "tonadex-server: " << tonadex::core::ToUtf8(tonadex::core::ErrorWords(error))
              << std::endl;
    return kCannotStart;
  }
}
