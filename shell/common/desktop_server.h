#pragma once

#include <filesystem>
#include <future>
#include <memory>
#include <string>

#include "server/embedded_server.h"

namespace tonadex::shell {

// The melody server of a run of the desktop program: the one that is configured, else one of its
// own, which starts in a thread while the splash stands.
class DesktopServer {
 public:
  // `argument`: base address from the command line, "" for none.
  DesktopServer(const std::string& argument, const std::filesystem::path& programFolder,
                const std::filesystem::path& installedData);

  // The configured base address; "" while the own server may still be starting.
  const std::string& Configured() const { return configured_; }
  // The base address to use, "" when there is no server. Waits until the own one has started.
  std::string Address();

 private:
  std::string configured_;
  std::future<std::unique_ptr<server::EmbeddedServer>> starting_;
  std::unique_ptr<server::EmbeddedServer> own_;
};

}  // namespace tonadex::shell
