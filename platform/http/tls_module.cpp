#include <dlfcn.h>

#include <filesystem>
#include <system_error>

#include "net/http.h"
#include "platform/http/tls.h"

namespace tonadex::platform {
namespace {

constexpr const char* kModule = "libtonadex-tls.so";

// Installed beside the program, else in the build folder. Not found through a run path of the
// program, because that would be searched for its other libraries, too, at every start.
void* LoadModule() {
  std::error_code failure;
  const auto program = std::filesystem::read_symlink("/proc/self/exe", failure).parent_path();
  for (const auto& folder :
       {program.parent_path() / TONADEX_LIBRARIES, std::filesystem::path(TONADEX_TLS_BUILD)}) {
    void* module = folder.empty() ? nullptr : ::dlopen((folder / kModule).c_str(), RTLD_NOW);
    if (module != nullptr) {
      return module;  // stays loaded
    }
  }
  throw net::TransferError(std::string("Este programa no puede usar https: falta ") + kModule);
}

}  // namespace

std::unique_ptr<TlsSession> MakeTlsSession(const std::string& host) {
  using Make = TlsSession* (*)(const char* host);
  const auto make = reinterpret_cast<Make>(::dlsym(LoadModule(), "TonadexTlsSession"));
  if (make == nullptr) {
    throw net::TransferError(kTlsFailure);
  }
  return std::unique_ptr<TlsSession>(make(host.c_str()));
}

}  // namespace tonadex::platform
