#include "net/client.h"

#include <utility>

#include "core/runtime_error.h"
#include "core/windows1252.h"

namespace tonadex::net {

using namespace core::literals;

Fetch FetchFrom(HttpGet& http, std::string base) {
  return [&http, base = std::move(base)](std::string_view path) {
    try {
      return http.Get(base + std::string(path));
    } catch (const TransferError& error) {
      throw core::RunTimeError(core::ErrorNumber::kTransfer,
                               std::string(u8"el servidor de melodías no responde ("_w) +
                                   core::FromUtf8(error.what()) + ")");
    }
  };
}

}  // namespace tonadex::net
