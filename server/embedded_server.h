#pragma once

#include <cstdint>
#include <filesystem>
#include <memory>
#include <optional>
#include <string>

namespace tonadex::server {

// PublishPort stores in the folder the port on which its server listens, so that other programs can
// find it; WithdrawPort removes it. False when it cannot be written.
bool PublishPort(const std::filesystem::path& folder, std::uint16_t port);
void WithdrawPort(const std::filesystem::path& folder);
std::optional<std::uint16_t> PublishedPort(const std::filesystem::path& folder);

enum class EmbeddedRole {
  kHost,    // holds the folder's lock: serves it and accepts uploads
  kGuest,   // uses the server of the program that holds the lock
  kReader,  // serves read-only: the folder cannot be written, or the host's server cannot be
            // reached
};

// The melody server inside another program: on a free port of the loopback address, in its own
// threads, from the constructor to the destructor. The first of several programs on one folder is
// the host; when it ends, one of the others takes over the folder and the port.
class EmbeddedServer {
 public:
  // `folder` is created if it is missing, and filled from `firstMelodies` if it has no melodies. If
  // it cannot be created or filled (full disk, no permission), its readable melodies are served,
  // else those of `firstMelodies`. Throws std::exception when no server can be started.
  EmbeddedServer(std::filesystem::path folder, std::filesystem::path firstMelodies);
  ~EmbeddedServer();
  EmbeddedServer(const EmbeddedServer&) = delete;
  EmbeddedServer& operator=(const EmbeddedServer&) = delete;

  // A URL like "http://127.0.0.1:49152". It changes only if a guest takes over and the port is not
  // free.
  std::string BaseAddress() const;
  EmbeddedRole Role() const;

 private:
  struct State;
  std::unique_ptr<State> state_;
};

// The server of a program folder, filled from the installed data when it is new. Null when it
// cannot be started; the program runs nevertheless, and its requests fail as without a network.
std::unique_ptr<EmbeddedServer> TryEmbeddedServer(const std::filesystem::path& programFolder,
                                                  const std::filesystem::path& installedData);

}  // namespace tonadex::server
