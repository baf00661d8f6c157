#include <CLI/CLI.hpp>
#include <exception>
#include <fstream>
#include <iostream>
#include <mutex>
#include <string>

#include "cli/terminal_words.h"
#include "core/error_words.h"
#include "core/windows1252.h"
#include "server/embedded_server.h"
#include "server/file_system.h"
#include "server/http_server.h"
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

// Lines of several threads, one after the other, on the disk at once.
class LineLog {
 public:
  explicit LineLog(const std::string& file) {
    if (!file.empty()) {
      file_.open(file, std::ios::app | std::ios::binary);
      if (!file_) {
        throw std::runtime_error("no se puede escribir el registro «" + file + "»");
      }
    }
  }
  void operator()(std::string_view line) {
    const std::lock_guard lock(mutex_);
    std::ostream& out = file_.is_open() ? file_ : std::cerr;
    out.clear();  // after a full disk: the next line may find room
    out << line << std::endl;
  }

 private:
  std::mutex mutex_;
  std::ofstream file_;
};

void Reload(Shelf& shelf) {
  try {
    shelf.Reload();
    std::cout << "Carpeta leída de nuevo: " << shelf.size() << " melodías" << std::endl;
  } catch (const std::exception& error) {  // what was there is served on
    std::cerr << "tonadex-server: " << tonadex::core::ToUtf8(tonadex::core::ErrorWords(error))
              << std::endl;
  }
}

void Serve(Arguments arguments) {
  const fs::path folder = arguments.folder;
  fs::create_directories(folder);
  const auto lock = FolderLock::Try(folder);
  if (!lock) {
    throw std::runtime_error("otro programa usa ya la carpeta «" + arguments.folder + "»");
  }
  LineLog log(arguments.logFile);
  RaiseOpenFileLimit();
  FillEmptyShelf(folder, arguments.firstMelodies);
  Shelf shelf(folder, ShelfAccess::kReadWrite);
  arguments.server.log = [&log](std::string_view line) { log(line); };
  HttpServer server(arguments.server, [&shelf](const Request& r) { return Handle(r, shelf); });
  if (!PublishPort(folder, server.Port())) {
    std::cerr << "tonadex-server: aviso: no se puede escribir en la carpeta «" << arguments.folder
              << "»; se sirve lo que hay" << std::endl;
  }
  std::cout << "Tonadex " << TONADEX_VERSION << ": " << shelf.size() << " melodías en http://"
            << arguments.server.address << ":" << server.Port() << "/" << std::endl;
  WaitForEndSignal([&shelf] { Reload(shelf); });
  WithdrawPort(folder);
}

}  // namespace

int main([[maybe_unused]] int argc, [[maybe_unused]] char** argv) {
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
