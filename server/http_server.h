#pragma once

#include <chrono>
#include <cstdint>
#include <functional>
#include <memory>
#include <stop_token>
#include <string>
#include <string_view>

#include "server/exchange.h"
#include "server/handler.h"
#include "server/limits.h"

namespace tonadex::server {

struct ServerOptions {
  std::string address = "127.0.0.1";  // a numeric address to listen on
  std::uint16_t port = 0;             // 0: any free one
  bool behindProxy = false;           // X-Forwarded-For names the client's address
  bool ownMachineOnly = false;        // refuses what another host's web page made a browser ask
  int threads = 0;                    // 0: as many as suit the machine
  std::uint16_t maxConnections = kMaxConnections;
  // From one address (an IPv6 network, /64, is one). Behind a proxy all connections are the
  // proxy's: there this many requests of one client are served at the same time.
  std::uint16_t maxConnectionsOfAddress = kMaxConnectionsOfAddress;
  std::size_t maxReplyBytes = kMaxReplyBytes;  // beyond it a request gets a 503
  std::chrono::milliseconds slowClient{kSlowClientMs};
  // Called after each request, from several threads. May be empty.
  std::function<void(const Exchange& exchange)> served;
};

using RequestHandler = std::function<Reply(const Request&)>;

// Speaks HTTP on a socket: reads requests (blanks and bytes above 127 in their first line
// included), hands those that are well formed to the handler and sends its replies. Knows no path.
class HttpServer {
 public:
  // Listens from here on, in threads of its own, which call the handler. Throws
  // std::runtime_error when it cannot listen.
  HttpServer(ServerOptions options, RequestHandler handler);
  ~HttpServer();
  HttpServer(const HttpServer&) = delete;
  HttpServer& operator=(const HttpServer&) = delete;

  std::uint16_t Port() const;
  int Connections() const;  // open at the moment
  // Takes no more connections and lets the requests under way end (kStopGraceMs at most); those
  // that take longer are abandoned.
  void Stop();

 private:
  struct State;
  std::unique_ptr<State> state_;
};

// Whether something listens on this port of the loopback address.
bool Answers(std::uint16_t port);

// Blocks until SIGTERM or SIGINT. Calls `ready` once it handles these signals, and `reload` for
// SIGHUP, where the system has it, in another thread: several signals before it begins are one. At
// the end a reload under way is asked to stop.
void WaitForEndSignal(const std::function<void()>& ready,
                      const std::function<void(const std::stop_token& stop)>& reload);

}  // namespace tonadex::server
