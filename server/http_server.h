#pragma once

#include <chrono>
#include <cstdint>
#include <functional>
#include <memory>
#include <stop_token>
#include <string>
#include <string_view>

#include "server/handler.h"
#include "server/limits.h"

namespace tonadex::server {

struct ServerOptions {
  std::string address = "127.0.0.1";  // a numeric address to listen on
  std::uint16_t port = 0;             // 0: any free one
  bool behindProxy = false;           // X-Forwarded-For names the client's address
  bool ownMachineOnly = false;        // refuses what another host's web page made a browser ask
  int threads = 0;                    // 0: as many as suit the machine
  int maxConnections = kMaxConnections;
  // From one address (an IPv6 network, /64, is one). Behind a proxy all connections are the
  // proxy's: there this many requests of one client are served at the same time.
  int maxConnectionsOfAddress = kMaxConnectionsOfAddress;
  std::size_t maxReplyBytes = kMaxReplyBytes;  // beyond it a request gets a 503
  std::chrono::milliseconds slowClient{kSlowClientMs};
  // Gets one line for each request, UTF-8 without a line end: time (UTC), address, method, path,
  // status, bytes of the body, milliseconds. What was searched for or uploaded is not in it.
  // Called from several threads. May be empty.
  std::function<void(std::string_view line)> log;
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
  // Takes no more requests, lets the replies under way end (kStopGraceMs at most).
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
