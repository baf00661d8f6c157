#include "server/embedded_server.h"

#include <charconv>
#include <chrono>
#include <condition_variable>
#include <mutex>
#include <stdexcept>
#include <system_error>
#include <thread>
#include <utility>

#include "files/read.h"
#include "files/write.h"
#include "server/file_system.h"
#include "server/http_server.h"
#include "server/shelf.h"

namespace tonadex::server {
namespace {

namespace fs = std::filesystem;
using std::chrono::milliseconds;

constexpr std::string_view kPortName = ".puerto";
constexpr std::size_t kMaxPortDigits = 5;
constexpr int kPortLookMs = 20;

}  // namespace

bool PublishPort(const fs::path& folder, std::uint16_t port) {
  WithdrawPort(folder);
  return files::Replace(folder / kPortName, std::to_string(port) + "\n");
}

void WithdrawPort(const fs::path& folder) {
  std::error_code ignored;
  fs::remove(folder / kPortName, ignored);
}

std::optional<std::uint16_t> PublishedPort(const fs::path& folder) {
  const std::string text = files::ReadHead(folder / kPortName, kMaxPortDigits).value_or("");
  std::uint16_t port = 0;
  const auto end = std::from_chars(text.data(), text.data() + text.size(), port);
  return end.ec == std::errc() ? std::optional(port) : std::nullopt;
}

struct EmbeddedServer::State {
  State(fs::path serverFolder, fs::path firstMelodies)
      : folder(std::move(serverFolder)), source(std::move(firstMelodies)) {}

  bool TryHost(std::uint16_t wantedPort);
  bool TryGuest();
  bool Join();
  void Read();
  void StartServer(std::shared_ptr<Shelf> newShelf, EmbeddedRole newRole, std::uint16_t wantedPort);
  void Watch();
  Reply Answer(const Request& request);

  const fs::path folder, source;
  std::unique_ptr<FolderLock> lock;  // outlives the shelf, whose destructor may write
  mutable std::mutex mutex;          // guards the members below
  EmbeddedRole role = EmbeddedRole::kHost;
  std::uint16_t port = 0;
  std::shared_ptr<Shelf> shelf;
  bool ending = false;
  std::condition_variable ended;
  std::unique_ptr<HttpServer> server;
  std::thread watcher;
};

Reply EmbeddedServer::State::Answer(const Request& request) {
  std::shared_ptr<Shelf> current;
  {
    const std::lock_guard guard(mutex);
    current = shelf;
  }
  return Handle(request, *current);
}

// A running server (of a reader that becomes the host) is kept and only gets the new shelf. If the
// wanted port is taken, any free one is used.
void EmbeddedServer::State::StartServer(std::shared_ptr<Shelf> newShelf, EmbeddedRole newRole,
                                        std::uint16_t wantedPort) {
  {
    const std::lock_guard guard(mutex);
    shelf = std::move(newShelf);
  }
  if (!server) {
    const auto answer = [this](const Request& request) { return Answer(request); };
    ServerOptions options;
    options.port = wantedPort;
    options.ownMachineOnly = true;
    try {
      server = std::make_unique<HttpServer>(options, answer);
    } catch (const std::runtime_error&) {
      if (wantedPort == 0) {
        throw;
      }
      options.port = 0;
      server = std::make_unique<HttpServer>(options, answer);
    }
  }
  const std::lock_guard guard(mutex);
  port = server->Port();
  role = newRole;
}

bool EmbeddedServer::State::TryHost(std::uint16_t wantedPort) {
  lock = FolderLock::Try(folder);
  if (!lock) {
    return false;
  }
  WithdrawPort(folder);  // left by a program that was killed
  FillEmptyShelf(folder, source);
  StartServer(std::make_shared<Shelf>(folder, ShelfAccess::kReadWrite), EmbeddedRole::kHost,
              wantedPort);
  PublishPort(folder, server->Port());
  return true;
}

bool EmbeddedServer::State::TryGuest() {
  const auto published = PublishedPort(folder);
  if (!published || !Answers(*published)) {
    return false;
  }
  role = EmbeddedRole::kGuest;
  port = *published;
  return true;
}

// Becomes host or guest; false when another program holds the folder and its server cannot be
// reached.
bool EmbeddedServer::State::Join() {
  fs::create_directories(folder);
  const auto deadline = Clock::now() + milliseconds(kPortWaitMs);
  for (;;) {
    if (TryHost(0) || TryGuest()) {
      return true;
    }
    if (Clock::now() >= deadline) {
      return false;
    }
    std::this_thread::sleep_for(milliseconds(kPortLookMs));
  }
}

void EmbeddedServer::State::Read() {
  std::shared_ptr<Shelf> readable;
  try {
    readable = std::make_shared<Shelf>(folder, ShelfAccess::kReadOnly);
  } catch (const std::exception&) {
    // The folder is missing or not readable.
  }
  std::error_code ignored;
  if (!readable || (readable->size() == 0 && fs::is_directory(source, ignored))) {
    readable = std::make_shared<Shelf>(source, ShelfAccess::kReadOnly);
  }
  StartServer(std::move(readable), EmbeddedRole::kReader, 0);
}

// Waits until the host ends, then takes its place.
void EmbeddedServer::State::Watch() {
  std::unique_lock guard(mutex);
  while (!ended.wait_for(guard, milliseconds(kGuestPollMs), [this] { return ending; })) {
    const std::uint16_t wantedPort = port;
    guard.unlock();
    bool hosting = false;
    try {
      hosting = TryHost(wantedPort);
    } catch (const std::exception&) {
      lock.reset();  // lets another program try; this one tries again later
    }
    guard.lock();
    if (hosting) {
      return;
    }
  }
}

EmbeddedServer::EmbeddedServer(fs::path folder, fs::path firstMelodies)
    : state_(std::make_unique<State>(std::move(folder), std::move(firstMelodies))) {
  bool mayHostLater = true;
  try {
    if (state_->Join()) {
      mayHostLater = state_->role == EmbeddedRole::kGuest;
    } else {
      state_->Read();
    }
  } catch (const std::exception&) {  // the disk is full, or the folder is not writable
    state_->lock.reset();
    state_->Read();
    mayHostLater = false;
  }
  if (mayHostLater) {
    state_->watcher = std::thread([this] { state_->Watch(); });
  }
}

EmbeddedServer::~EmbeddedServer() {
  {
    const std::lock_guard guard(state_->mutex);
    state_->ending = true;
  }
  state_->ended.notify_all();
  if (state_->watcher.joinable()) {
    state_->watcher.join();
  }
  if (state_->lock) {
    WithdrawPort(state_->folder);
  }
  state_->server.reset();
}

std::string EmbeddedServer::BaseAddress() const {
  const std::lock_guard guard(state_->mutex);
  return "http://127.0.0.1:" + std::to_string(state_->port);
}

EmbeddedRole EmbeddedServer::Role() const {
  const std::lock_guard guard(state_->mutex);
  return state_->role;
}

std::unique_ptr<EmbeddedServer> TryEmbeddedServer(const fs::path& programFolder,
                                                  const fs::path& installedData) {
  try {
    return std::make_unique<EmbeddedServer>(programFolder / "servidor", installedData / "servidor");
  } catch (const std::exception&) {
    return nullptr;
  }
}

}  // namespace tonadex::server
