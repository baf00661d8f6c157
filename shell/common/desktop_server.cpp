#include "shell/common/desktop_server.h"

#include "net/server_address.h"

namespace tonadex::shell {

DesktopServer::DesktopServer(const std::string& argument,
                             const std::filesystem::path& programFolder,
                             const std::filesystem::path& installedData)
    : configured_(net::ConfiguredServer(argument, programFolder)) {
  if (configured_.empty()) {
    starting_ =
        std::async(std::launch::async, server::TryEmbeddedServer, programFolder, installedData);
  }
}

std::string DesktopServer::Address() {
  if (starting_.valid()) {
    own_ = starting_.get();
  }
  return own_ != nullptr ? own_->BaseAddress() : configured_;
}

}  // namespace tonadex::shell
