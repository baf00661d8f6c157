#include <algorithm>
#include <exception>
#include <iostream>
#include <memory>
#include <stop_token>
#include <string>
#include <vector>

#include "core/error_words.h"
#include "core/windows1252.h"
#include "server/embedded_server.h"
#include "server/file_system.h"
#include "server/http_server.h"
#include "server/line_log.h"
#include "server/shelf.h"
#include "terminal/arguments.h"
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
constexpr std::uint16_t kDefaultPort = 8080;

std::string InstalledMelodies() {
  const fs::path installed = tonadex::platform::InstalledData();
  return installed.empty() ? "" : (installed / "servidor").string();
}

struct Arguments {
  ServerOptions server;
  // The desktop program's own place, so that both share their melodies.
  std::string folder = (tonadex::platform::ProgramFolderPath() / "servidor").string();
  std::string logFile;
  std::string firstMelodies = InstalledMelodies();
};

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

int Serve(Arguments& arguments) {
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
  RateLimit conversions(kConversionsPerMinute);
  HttpServer server(arguments.server, [&shelf, &conversions](const Request& r) {
    return Handle(r, shelf, &conversions);
  });
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
  return 0;
}

tonadex::terminal::Program Describe(Arguments& arguments) {
  ServerOptions& server = arguments.server;
  server.port = kDefaultPort;
  const std::vector<tonadex::terminal::Option> options = {
      {"--puerto", "PUERTO", "Puerto en el que escucha (0: uno libre)", &server.port},
      {"--direccion", "DIRECCIÓN", "Dirección numérica en la que escucha; 0.0.0.0 para todas",
       &server.address},
      {"--carpeta", "CARPETA", "Carpeta de las melodías", &arguments.folder},
      {"--registro", "FICHERO",
       "Fichero al que se añade una línea por petición (si falta, la salida de errores)",
       &arguments.logFile},
      {"--estanteria", "CARPETA", "Melodías con las que se llena una carpeta vacía",
       &arguments.firstMelodies},
      {"--proxy", "",
       "Hay un proxy delante: la dirección del cliente es la última de X-Forwarded-For",
       &server.behindProxy},
  };
  return {{"tonadex-server", "Servidor de melodías de Tonadex", options,
           [&arguments] { return Serve(arguments); }}};
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
  try {
    Arguments arguments;
    return tonadex::terminal::Run(Describe(arguments), {argv + std::min(argc, 1), argv + argc},
                                  std::cout, std::cerr);
  } catch (const std::exception& error) {
    std::cerr << "tonadex-server: " << tonadex::core::ToUtf8(tonadex::core::ErrorWords(error))
              << std::endl;
    return kCannotStart;
  }
}
