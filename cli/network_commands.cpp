// buscar, azar, descargar and subir.

#include <chrono>
#include <optional>

#include "cli/commands.h"
#include "core/melody_file.h"
#include "core/message_box.h"
#include "core/number.h"
#include "core/runtime_error.h"
#include "core/text.h"
#include "core/windows1252.h"
#include "files/paths.h"
#include "json/text.h"
#include "net/addresses.h"
#include "net/client.h"
#include "net/download.h"
#include "net/file_name.h"
#include "net/listing.h"
#include "net/server_address.h"
#include "net/upload.h"
#include "platform/common/program_folder.h"
#include "platform/http/http_client.h"
#include "server/embedded_server.h"

namespace tonadex::cli {
namespace {

namespace fs = std::filesystem;
using Clock = std::chrono::steady_clock;

constexpr int kGood = 200;
constexpr std::chrono::milliseconds kQuietTime{1000};  // no progress line before this
constexpr std::chrono::milliseconds kProgressStep{250};

// Shows the progress of a long transfer on one line that is overwritten.
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

// The server's error reply as a sentence for the user; HTML pages and long texts are left out.
std::string RefusalWords(int status, const std::string& reply) {
  constexpr std::size_t kLongest = 200;
  if (status / 100 == 3) {
    return "la dirección del servidor ha cambiado (código " + std::to_string(status) +
           "): puede que ahora empiece por https://";
  }
  const bool sentence = !reply.empty() && reply.size() < kLongest && !core::Contains(reply, "<");
  return sentence ? "el servidor contesta: " + ForTerminal(reply)
                  : "el servidor rechaza la petición";
}

// The melody server of one run: the configured one, else the embedded one, which is shared with a
// running desktop program.
class Server {
 public:
  Server(Context& context, const std::string& argument) : progress_(context.err) {
    const fs::path folder = platform::PrepareProgramFolder();
    base_ = net::ConfiguredServer(argument, folder);
    if (base_.empty()) {
      embedded_.emplace(folder / "servidor", platform::InstalledData() / "servidor");
      base_ = embedded_->BaseAddress();
    }
  }

  const std::string& Get(std::string_view path) {
    reply_ = net::FetchFrom(http_, base_)(path);
    return reply_;
  }
  // Throws a Failure with the server's reply unless the status is 200. (The window uses replies of
  // any status.)
  void ThrowIfRefused(ExitCode code, const std::string& before) const {
    if (http_.LastStatus() != kGood) {
      throw Failure{code, before + RefusalWords(http_.LastStatus(), reply_)};
    }
  }

 private:
  Progress progress_;
  platform::HttpClient http_{{.pump = {}, .progress = [this](auto received, auto total) {
                                progress_.Tell(received, total);
                              }}};
  std::optional<server::EmbeddedServer> embedded_;
  std::string base_;
  std::string reply_;
};

// Every error of the transfer is a system failure.
void WithServer(Context& context, const Arguments& arguments,
                const std::function<void(Server&)>& work) {
  try {
    Server server(context, arguments.server);
    work(server);
  } catch (const std::exception& error) {
    throw Failure{ExitCode::kSystemFailed, WordsOf(error)};
  }
}

// Prints each row as it is read, because a listing may have millions.
void List(Context& context, const Arguments& arguments, const std::string& path, bool stemAlone) {
  WithServer(context, arguments, [&](Server& server) {
    const std::string& reply = server.Get(path);
    server.ThrowIfRefused(ExitCode::kSystemFailed, "");
    json::JsonList list(context.out);
    bool empty = true;
    net::ReadListing(reply, stemAlone, [&](std::string_view text, std::int32_t number) {
      const std::string file = ForTerminal(core::MelodyFileName(text, number));
      const std::string row = ForTerminal(text);
      if (arguments.json) {
        list.Add({{"fichero", file}, {"melodia", row}});
      } else {
        context.out << file << '\t' << row << '\n';
      }
      empty = false;
    });
    if (arguments.json) {
      list.End();
    }
    if (empty) {
      Fail(context, {ExitCode::kNotConverted, core::ToUtf8(net::HintRow(0)) + "."});
      context.err << (stemAlone ? core::ToUtf8(net::HintRow(1)) + "\n" : "");
    }
  });
}

// `name` is "stem.number", as in listings.
void DownloadOne(Context& context, Server& server, const fs::path& folder, const fs::path& bin,
                 const std::string& name) {
  const std::string fileName = core::FromUtf8(name);
  const std::size_t stop = fileName.rfind('.');
  const auto number = core::FindInt32(fileName.substr(stop + 1));  // npos + 1 is 0
  if (stop == fileName.npos || !net::IsSafeFileName(fileName) || !number) {
    throw Failure{ExitCode::kWrongUse, name + ": no es un nombre de melodía (nombre.número)"};
  }
  std::string reply = server.Get(net::MelodyAddress(fileName));
  server.ThrowIfRefused(ExitCode::kNotConverted, name + ": ");
  std::string text;
  const std::string row = " (" + fileName.substr(0, stop) + ")";
  if (!net::DownloadMelody([&](std::string_view) { return reply; }, folder, bin, row, *number,
                           text)) {
    throw Failure{ExitCode::kSystemFailed, name + ": no se puede escribir en la carpeta"};
  }
  const std::u8string stored = (folder / files::PathFromText(fileName)).u8string();
  context.out << std::string(stored.begin(), stored.end()) << '\n';
}

void UploadOne(Context& context, Server& server, const MelodyInput& input) {
  std::string text = core::UndoSharpEscape(input.line);
  const std::size_t colon = text.find(':');
  if (colon == text.npos) {
    throw Failure{ExitCode::kNotConverted, input.name + ": no es una melodía RTTTL"};
  }
  const std::string name = text.substr(0, colon);
  core::RecordingMessages messages;
  const core::ScopedMessageSink scope(messages);
  std::string listing;
  const auto fetch = [&server](std::string_view path) { return server.Get(path); };
  const bool sent = net::UploadMelody(fetch, name, text, listing) == net::UploadResult::kSent;
  if (sent) {  // the success message ignores the server's reply
    server.ThrowIfRefused(ExitCode::kNotConverted, input.name + ": ");
  } else {
    Fail(context, ExitCode::kNotConverted);
  }
  for (const core::Message& message : messages.messages) {
    (sent ? context.out : context.err) << input.name << ": " << ForTerminal(message.text) << '\n';
  }
}

}  // namespace

void Search(Context& context, const Arguments& arguments) {
  std::string words;
  for (const std::string& word : arguments.words) {
    words += (words.empty() ? "" : " ") + word;
  }
  List(context, arguments, net::SearchAddress(core::FromUtf8(words)), true);
}

void ListRandom(Context& context, const Arguments& arguments) {
  List(context, arguments, std::string(net::kRandomPath), false);
}

void Download(Context& context, const Arguments& arguments) {
  WithServer(context, arguments, [&](Server& server) {
    const fs::path program = platform::ProgramFolderPath();
    const fs::path folder =
        arguments.folder.empty() ? program / "melodias" : ArgumentPath(arguments.folder);
    const fs::path bin = (arguments.folder.empty() ? program : folder) / net::kBinFolder;
    fs::create_directories(folder);
    for (const std::string& name : arguments.words) {
      Attempt(context, [&] { DownloadOne(context, server, folder, bin, name); });
    }
  });
}

void Upload(Context& context, const Arguments& arguments) {
  WithServer(context, arguments, [&](Server& server) {
    ForEachMelody(context, arguments.words,
                  [&](const MelodyInput& input) { UploadOne(context, server, input); });
  });
}

}  // namespace tonadex::cli
