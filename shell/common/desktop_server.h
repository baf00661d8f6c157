#pragma once

#include <filesystem>
#include <future>
#include <memory>
#include <string>

#include "server/embedded_server.h"

namespace tonadex::shell {

// The melody server of the desktop program: the configured one, else an embedded one, which starts
// in a thread while the splash is shown.
class DesktopServer {
 public:
  // `argument`: base address from the command line, "" for none.
  DesktopServer(const std::string& argument, const std::filesystem::path& programFolder,
                const std::filesystem::path& installedData);

  // The configured base address; "" when the embedded server is to be used.
  const std::string& Configured() const { return configured_; }
  // The base address to use, "" when there is no server. Waits until the embedded one has started.
  std::string Address();

 private:
  std::string configured_;
  std::future<std::unique_ptr<server::EmbeddedServer>> starting_;
  std::unique_ptr<server::EmbeddedServer> own_;
};

}  // namespace tonadex::shell
