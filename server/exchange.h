#pragma once

#include <chrono>
#include <cstddef>
#include <string>
#include <string_view>

namespace tonadex::server {

// A request and its outcome, for the log and the metrics. Texts are UTF-8 or raw bytes of the
// request.
struct Exchange {
  std::string_view method;  // "" when the request could not be parsed
  std::string_view target;  // path and query as received; "" when unknown
  std::string client;       // address
  int status = 0;
  std::size_t bytes = 0;  // of the reply's body
  std::chrono::duration<double> taken{};
  // The limit of the socket loop that refused the request: "conexiones", "simultaneas" or
  // "memoria", else "".
  std::string_view limit = {};
};

// A line of the log, UTF-8 without a line end: time (UTC), address, method, path, status, bytes of
// the body, milliseconds. Neither form contains the query, which holds what people search for.
std::string LogLine(const Exchange& exchange);
// {"hora":…,"cliente":…,"metodo":…,"ruta":…,"estado":…,"bytes":…,"ms":…}, with the same values.
std::string LogJson(const Exchange& exchange);

}  // namespace tonadex::server
