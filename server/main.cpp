#include <algorithm>
#include <atomic>
#include <exception>
#include <functional>
#include <iostream>
#include <memory>
#include <stdexcept>
#include <stop_token>
#include <string>
#include <vector>

#include "core/error_words.h"
#include "core/windows1252.h"
#include "platform/common/program_folder.h"
#include "server/embedded_server.h"
#include "server/end_signal.h"
#include "server/file_system.h"
#include "server/http_server.h"
#include "server/line_log.h"
#include "server/metrics.h"
#include "server/rate_limit.h"
#include "server/shelf.h"
#include "terminal/arguments.h"
#ifdef _WIN32
#include "platform/win32/console.h"
#endif
#ifdef TONADEX_POSTGRESQL
#include "server/postgresql/postgresql_store.h"
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
  // The desktop program's folder, so that both share their melodies.
  std::string folder = (tonadex::platform::ProgramFolderPath() / "servidor").string();
  std::string logFile;
  bool logsJson = false;
  std::uint16_t uploadsPerMinute = kUploadsPerMinute;
  std::uint16_t conversionsPerMinute = kConversionsPerMinute;
  std::string firstMelodies = InstalledMelodies();
  std::string database;      // URI; "" for the folder
  std::string copiedFolder;  // its melodies are copied into the database
};

// The number of melodies as text for a message.
std::string CountWords(const Store& store) {
  try {
    return std::to_string(store.size()) + " melodías";
  } catch (const StoreAway&) {
    return "sin llegar aún a las melodías";
  }
}

void Reload(Store& store, LineLog& log, const std::stop_token& stop) {
  log.Reopen();
  try {
    if (store.Reload(stop)) {
      SayLine(Stream::kOutput, "Leídas de nuevo: " + CountWords(store));
    }
  } catch (const std::exception& error) {  // the melodies read before are still served
    SayLine(Stream::kError,
            "tonadex-server: " + tonadex::core::ToUtf8(tonadex::core::ErrorWords(error)));
  }
}

// Locks the folder. Null when the lock cannot be created (a read-only mount, another user's
// folder): then nothing can be written anyway.
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

Reply MetricsReply(const Metrics& metrics, const Store& store, int connections) {
  Gauges gauges{.melodies = {}, .connections = connections};
  try {
    gauges.melodies = store.Reachable() ? std::optional(store.size()) : std::nullopt;
  } catch (const StoreAway&) {  // became unreachable after Reachable()
  }
  Reply reply = TextReply(200, metrics.Text(gauges));
  reply.contentType = kMetricsType;
  return reply;
}

// Serves until a signal ends it. `ready` is called with the port.
void ServeStore(Arguments& arguments, Store& store,
                const std::function<void(std::uint16_t port)>& ready) {
  LineLog log(arguments.logFile);
  RaiseOpenFileLimit();
  Metrics metrics;
  arguments.server.served = [&, inJson = arguments.logsJson](const Exchange& exchange) {
    metrics.Count(exchange);
    log(inJson ? LogJson(exchange) : LogLine(exchange));
  };
  RateLimit conversions(arguments.conversionsPerMinute);
  std::atomic<const HttpServer*> running = nullptr;
  HttpServer server(arguments.server, [&](const Request& request) {
    const HttpServer* listening = running;
    return !request.post && request.target == kMetricsPath
               ? MetricsReply(metrics, store, listening == nullptr ? 0 : listening->Connections())
               : Handle(request, store, &conversions);
  });
  running = &server;
  const auto announce = [&] {
    ready(server.Port());
    SayLine(Stream::kOutput, "Tonadex " TONADEX_VERSION ": " + CountWords(store) + " en http://" +
                                 arguments.server.address + ":" + std::to_string(server.Port()) +
                                 "/");
  };
  WaitForEndSignal(announce, [&](const std::stop_token& stop) { Reload(store, log, stop); });
}

int ServeFolder(Arguments& arguments) {
  const fs::path folder = arguments.folder;
  fs::create_directories(folder);
  const auto lock = LockUnlessReadOnly(arguments.folder);
  if (lock) {
    FillEmptyShelf(folder, arguments.firstMelodies);
  }
  Shelf shelf(folder, lock ? ShelfAccess::kReadWrite : ShelfAccess::kReadOnly,
              arguments.uploadsPerMinute);
  ServeStore(arguments, shelf, [&](std::uint16_t port) {
    if (!lock || !PublishPort(folder, port)) {
      SayLine(Stream::kError, "tonadex-server: aviso: no se puede escribir en la carpeta «" +
                                  arguments.folder + "»; se sirve lo que hay");
    }
  });
  if (lock) {
    WithdrawPort(folder);
  }
  return 0;
}

#ifdef TONADEX_POSTGRESQL
int ServeDatabase(Arguments& arguments) {
  if (!IsDatabaseAddress(arguments.database)) {
    throw std::runtime_error(
        "--almacen espera una dirección postgresql://…, con @ / ? # % escritos como %40 %2F %3F "
        "%23 %25 en el usuario y la contraseña");
  }
  PostgresqlStore store(
      arguments.database,
      [](std::string_view line) {
        SayLine(Stream::kError, "tonadex-server: " + std::string(line));
      },
      arguments.uploadsPerMinute);
  if (!arguments.copiedFolder.empty()) {
    const std::size_t added = store.CopyFrom(arguments.copiedFolder);
    SayLine(Stream::kOutput,
            "Copiadas " + std::to_string(added) + " melodías; hay " + std::to_string(store.size()));
    return 0;
  }
  arguments.server.threads = 2 * kDatabaseConnections;  // half may wait for the database
  ServeStore(arguments, store, [](std::uint16_t) {});
  return 0;
}
#endif

int Serve(Arguments& arguments) {
#ifdef TONADEX_POSTGRESQL
  if (!arguments.database.empty()) {
    return ServeDatabase(arguments);
  }
  if (!arguments.copiedFolder.empty()) {
    throw std::runtime_error("--copiar-de copia a la base de datos de --almacen, que falta");
  }
#endif
  return ServeFolder(arguments);
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
      {"--registro-json", "", "Cada línea del registro es un objeto JSON", &arguments.logsJson},
      {"--estanteria", "CARPETA", "Melodías con las que se llena una carpeta vacía",
       &arguments.firstMelodies},
      {"--proxy", "",
       "Hay un proxy delante: la dirección del cliente es la última de X-Forwarded-For",
       &server.behindProxy},
      {"--conexiones", "NÚMERO", "Conexiones a la vez", &server.maxConnections, false, 1},
      {"--conexiones-por-cliente", "NÚMERO",
       "De ellas, las de una dirección; con --proxy, peticiones a la vez",
       &server.maxConnectionsOfAddress, false, 1},
      {"--subidas-por-minuto", "NÚMERO", "Melodías que una dirección puede subir en un minuto",
       &arguments.uploadsPerMinute},
      {"--conversiones-por-minuto", "NÚMERO",
       "Peticiones de conversión de una dirección en un minuto", &arguments.conversionsPerMinute},
#ifdef TONADEX_POSTGRESQL
      {"--almacen", "DIRECCIÓN",
       "Base de datos de las melodías, postgresql://…, en lugar de la carpeta",
       &arguments.database},
      {"--copiar-de", "CARPETA", "Copia a la base de datos las melodías de una carpeta, y termina",
       &arguments.copiedFolder},
#endif
  };
  return {{.name = "tonadex-server",
           .help = "Servidor de melodías de Tonadex",
           .options = options,
           .run = [&arguments] { return Serve(arguments); },
           .variables = "TONADEX_"}};
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
