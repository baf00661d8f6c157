#pragma once

#include <cstdint>
#include <filesystem>
#include <memory>
#include <optional>
#include <string>

namespace tonadex::server {

// Says where the folder's server listens on this machine, for the programs that find the folder
// taken; nothing in the folder means that nobody does. False when that cannot be written.
bool PublishPort(const std::filesystem::path& folder, std::uint16_t port);
void WithdrawPort(const std::filesystem::path& folder);
std::optional<std::uint16_t> PublishedPort(const std::filesystem::path& folder);

enum class EmbeddedRole {
  kHost,    // the folder is ours: listens, and takes uploads
  kGuest,   // uses the server of the program that has the folder
  kReader,  // its server cannot be reached, or the folder cannot be written: one that only reads
};

// The melody server inside another program: on a free port of this machine's own loopback address,
// in threads of its own, from the constructor to the destructor. Of several programs on one folder
// the first is the host; when it ends, one of the others takes its place, at the same address.
class EmbeddedServer {
 public:
  // `folder` is made when it is missing and filled from `firstMelodies` when it holds none.
  // When it can be neither made nor filled (a full disk, no permission), what can be read of it is
  // served, else `firstMelodies` itself. Throws std::exception when there can be no server.
  EmbeddedServer(std::filesystem::path folder, std::filesystem::path firstMelodies);
  ~EmbeddedServer();
  EmbeddedServer(const EmbeddedServer&) = delete;
  EmbeddedServer& operator=(const EmbeddedServer&) = delete;

  // "http://127.0.0.1:49152". It changes only if a guest takes over and the port is lost.
  std::string BaseAddress() const;
  EmbeddedRole Role() const;

 private:
  struct State;
  std::unique_ptr<State> state_;
};

// The server of a program folder, filled at first from the installed data; null when there can be
// no server, which is no reason for a program not to start: requests then fail as without a
// network.
std::unique_ptr<EmbeddedServer> TryEmbeddedServer(const std::filesystem::path& programFolder,
                                                  const std::filesystem::path& installedData);

}  // namespace tonadex::server
