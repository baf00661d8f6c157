// buscar, azar, descargar and subir.

#include <CLI/CLI.hpp>
#include <chrono>
#include <memory>
#include <nlohmann/json.hpp>
#include <optional>

#include "cli/context.h"
#include "core/melody_file.h"
#include "core/number.h"
#include "core/runtime_error.h"
#include "core/text.h"
#include "core/windows1252.h"
#include "files/paths.h"
#include "net/addresses.h"
#include "net/client.h"
#include "net/download.h"
#include "net/file_name.h"
#include "net/listing.h"
#include "net/upload.h"
#include "platform/http/http_client.h"
#include "platform/message_box.h"
#include "server/configured_server.h"
#include "server/embedded_server.h"
#ifdef _WIN32
#include "platform/win32/program_folder.h"
#else
#include "platform/posix/program_folder.h"
#endif

namespace tonadex::cli {
namespace {

namespace fs = std::filesystem;
using Clock = std::chrono::steady_clock;

constexpr int kGood = 200;
constexpr std::chrono::milliseconds kQuietTime{1000};  // before progress is worth a line
constexpr std::chrono::milliseconds kProgressStep{250};

struct NetworkOptions {
  std::string server;
  bool json = false;
  std::vector<std::string> arguments;
  std::string folder;
};

// Tells about a transfer that takes long, on one line that is written again and again.
class Progress {
 public:
  explicit Progress(std::ostream& err) : err_(err) {}
  ~Progress() {
    if (shown_) {
      err_ << '\n';
    }
  }
  Progress(const Progress&) = delete;
  Progress& operator=(const Progress&) = delete;

  void Tell(std::size_t received, std::optional<std::uint64_t> total) {
    const Clock::time_point now = Clock::now();
    if (now < next_) {
      return;
    }
    next_ = now + kProgressStep;
    shown_ = true;
    err_ << '\r' << received / 1024 << " KiB";
    if (total.value_or(0) != 0) {
      err_ << " de " << *total / 1024 << " (" << 100 * received / *total << " %)";
    }
    err_ << "   " << std::flush;
  }

 private:
  std::ostream& err_;
  Clock::time_point next_ = Clock::now() + kQuietTime;
  bool shown_ = false;
};

// The melody server of one run: the configured one, else the embedded one, which the desktop
// program shares when it runs.
class Server {
 public:
  Server(Context& context, const std::string& argument) : progress_(context.err) {
    const fs::path folder = platform::PrepareProgramFolder();
    base_ = server::ConfiguredServer(argument, folder);
    if (base_.empty()) {
      embedded_.emplace(folder / "servidor", platform::InstalledData() / "servidor");
      base_ = embedded_->BaseAddress();
    }
  }

  // A status other than 200 is told apart, unlike in the window, where its text is taken as it is.
  const std::string& Get(std::string_view path) {
    reply_ = net::FetchFrom(http_, base_)(path);
    return reply_;
  }
  bool Refused() const { return http_.LastStatus() != kGood; }
  const std::string& LastReply() const { return reply_; }

 private:
  Progress progress_;
  platform::HttpClient http_{{.pump = {}, .progress = [this](auto received, auto total) {
                                progress_.Tell(received, total);
                              }}};
  std::optional<server::EmbeddedServer> embedded_;
  std::string base_;
  std::string reply_;
};

// What the server said instead of serving, for people; pages and long texts are left out.
std::string RefusalWords(const Server& server) {
  constexpr std::size_t kLongest = 200;
  const std::string& reply = server.LastReply();
  const bool sentence = !reply.empty() && reply.size() < kLongest && !core::Contains(reply, "<");
  return sentence ? "el servidor contesta: " + ForTerminal(reply)
                  : "el servidor no la da ni la toma";
}

// Runs a command against its server; whatever goes wrong on the way is reported.
template <typename Work>
void WithServer(Context& context, const NetworkOptions& options, Work&& work) {
  try {
    Server server(context, options.server);
    work(server);
  } catch (const std::exception& error) {
    Fail(context, ExitCode::kSystemFailed, WordsOf(error));
  }
}

// Prints each row as it is read: a listing may have millions.
class RowPrinter {
 public:
  RowPrinter(Context& context, bool json) : out_(context.out), json_(json) {}

  void Add(std::string_view text, std::int32_t number) {
    const std::string file = ForTerminal(core::MelodyFileName(text, number));
    const std::string row = ForTerminal(text);
    if (json_) {
      out_ << (count_ == 0 ? "[\n" : ",\n") << " {\n  \"fichero\": " << nlohmann::json(file).dump()
           << ",\n  \"melodia\": " << nlohmann::json(row).dump() << "\n }";
    } else {
      out_ << file << '\t' << row << '\n';
    }
    ++count_;
  }
  // Ends the output; gives how many rows it has.
  std::size_t End() {
    if (json_) {
      out_ << (count_ == 0 ? "[]\n" : "\n]\n");
    }
    return count_;
  }

 private:
  std::ostream& out_;
  bool json_;
  std::size_t count_ = 0;
};

void List(Context& context, const NetworkOptions& options, const std::string& path,
          bool stemAlone) {
  WithServer(context, options, [&](Server& server) {
    const std::string& reply = server.Get(path);
    if (server.Refused()) {
      Fail(context, ExitCode::kSystemFailed, RefusalWords(server));
      return;
    }
    RowPrinter printer(context, options.json);
    net::ReadListing(reply, stemAlone, [&](auto text, auto number) { printer.Add(text, number); });
    if (printer.End() == 0) {
      Fail(context, ExitCode::kNotConverted, core::ToUtf8(net::HintRow(0)) + ".");
      context.err << (stemAlone ? core::ToUtf8(net::HintRow(1)) + "\n" : "");
    }
  });
}

void Search(Context& context, const NetworkOptions& options) {
  std::string words;
  for (const std::string& word : options.arguments) {
    words += (words.empty() ? "" : " ") + word;
  }
  List(context, options, net::SearchAddress(core::FromUtf8(words)), true);
}

// `name`: "stem.number" as the listings show it.
void DownloadOne(Context& context, Server& server, const fs::path& folder,
                 const std::string& name) {
  const std::string fileName = core::FromUtf8(name);
  const std::size_t stop = fileName.rfind('.');
  std::int32_t number = 0;
  if (stop == fileName.npos || !net::IsSafeFileName(fileName) || !core::SkipErrors([&] {
        number = core::ToInt32(core::ToNumber(fileName.substr(stop + 1)));
      })) {
    Fail(context, ExitCode::kWrongUse, name + ": no es un nombre de melodía (nombre.número)");
    return;
  }
  std::string reply = server.Get(net::MelodyAddress(fileName));
  if (server.Refused()) {
    Fail(context, ExitCode::kNotConverted, name + ": " + RefusalWords(server));
    return;
  }
  std::string text;
  const std::string row = " (" + fileName.substr(0, stop) + ")";
  if (!net::DownloadMelody([&](std::string_view) { return reply; }, folder, row, number, text)) {
    Fail(context, ExitCode::kSystemFailed, name + ": no se puede escribir en la carpeta");
    return;
  }
  const std::u8string stored = (folder / files::PathFromText(fileName)).u8string();
  context.out << std::string(stored.begin(), stored.end()) << '\n';
}

void Download(Context& context, const NetworkOptions& options) {
  WithServer(context, options, [&](Server& server) {
    const fs::path folder = options.folder.empty() ? platform::ProgramFolderPath() / "melodias"
                                                   : ArgumentPath(options.folder);
    fs::create_directories(folder);
    for (const std::string& name : options.arguments) {
      DownloadOne(context, server, folder, name);
    }
  });
}

void UploadOne(Context& context, Server& server, const MelodyInput& input) {
  std::string text = core::UndoSharpEscape(input.line);
  const std::size_t colon = text.find(':');
  if (colon == text.npos) {
    Fail(context, ExitCode::kNotConverted, input.name + ": no es una melodía RTTTL");
    return;
  }
  const std::string name = text.substr(0, colon);
  platform::RecordingMessages messages;
  const platform::ScopedMessageSink scope(messages);
  std::string listing;
  const auto fetch = [&server](std::string_view path) { return server.Get(path); };
  const bool sent = net::UploadMelody(fetch, name, text, listing) == net::UploadResult::kSent;
  if (sent && server.Refused()) {  // the message says that all is well, whatever the answer was
    Fail(context, ExitCode::kNotConverted, input.name + ": " + RefusalWords(server));
    return;
  }
  for (const platform::Message& message : messages.messages) {
    (sent ? context.out : context.err) << input.name << ": " << ForTerminal(message.text) << '\n';
  }
  if (!sent) {
    Fail(context, ExitCode::kNotConverted);
  }
}

void Upload(Context& context, const NetworkOptions& options) {
  WithServer(context, options, [&](Server& server) {
    for (const std::string& file : FilesOrInput(options.arguments)) {
      MelodyInput input;
      if (ReadMelody(context, file, input)) {
        UploadOne(context, server, input);
      }
    }
  });
}

struct NetworkCommand {
  const char* name;
  const char* description;
  const char* argumentsWord;  // null for a command without arguments
  const char* argumentsName;
  const char* argumentsHelp;
  void (*run)(Context& context, const NetworkOptions& options);
  bool listsMelodies, needsArguments;
};

constexpr NetworkCommand kCommands[] = {
    {"buscar", "Busca melodías en el servidor", "palabras", "PALABRA",
     "Palabras del nombre; sin ninguna salen las más nuevas", Search, true, false},
    {"azar", "Muestra unas melodías del servidor al azar", nullptr, nullptr, nullptr,
     [](Context& context, const NetworkOptions& options) {
       List(context, options, std::string(net::kRandomPath), false);
     },
     true, false},
    {"descargar", "Trae melodías del servidor al repertorio", "melodias", "MELODIA",
     "Nombre.número, como lo muestra buscar", Download, false, true},
    {"subir", "Da melodías RTTTL al servidor", "ficheros", "FICHERO",
     "Melodías RTTTL; \"-\" es la entrada estándar", Upload, false, false},
};

void AddCommand(CLI::App& app, Context& context, const NetworkCommand& command) {
  auto options = std::make_shared<NetworkOptions>();
  CLI::App& added = *app.add_subcommand(command.name, command.description);
  if (command.argumentsWord != nullptr) {
    added.add_option(command.argumentsWord, options->arguments, command.argumentsHelp)
        ->type_name(command.argumentsName)
        ->required(command.needsArguments);
  }
  added.add_option("--servidor", options->server, "Dirección del servidor (http://…)")
      ->type_name("URL");
  if (command.listsMelodies) {
    added.add_flag("--json", options->json, "En JSON");
  }
  if (command.run == Download) {
    added.add_option("--carpeta", options->folder, "Carpeta en la que se guardan")
        ->type_name("CARPETA");
  }
  added.callback([&context, options, run = command.run] { run(context, *options); });
}

}  // namespace

void AddNetwork(CLI::App& app, Context& context) {
  for (const NetworkCommand& command : kCommands) {
    AddCommand(app, context, command);
  }
}

}  // namespace tonadex::cli
