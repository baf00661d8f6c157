#pragma once

#include <chrono>
#include <cstdint>
#include <functional>
#include <memory>
#include <string>

#include "server/exchange.h"
#include "server/handler.h"
#include "server/limits.h"

namespace tonadex::server {

struct ServerOptions {
  std::string address = "127.0.0.1";  // a numeric address to listen on
  std::uint16_t port = 0;             // 0 for any free port
  bool behindProxy = false;           // X-Forwarded-For names the client's address
  bool ownMachineOnly = false;        // refuses requests that a foreign web page causes
  int threads = 0;                    // 0: two for each processor core, at least four
  std::uint16_t maxConnections = kMaxConnections;
  // Per client address (an IPv6 network, /64, is one). Behind a proxy, from which all connections
  // come, it limits each client's simultaneous requests.
  std::uint16_t maxConnectionsOfAddress = kMaxConnectionsOfAddress;
  std::size_t maxReplyBytes = kMaxReplyBytes;  // of all replies being sent; then 503
  std::chrono::milliseconds slowClient{kSlowClientMs};
  // Called after each request, from several threads. May be empty.
  std::function<void(const Exchange& exchange)> served;
};

using RequestHandler = std::function<Reply(const Request&)>;

// The HTTP server: reads requests (whose first line may have blanks and bytes above 127), passes
// valid ones to the handler and sends its replies. It knows no paths.
class HttpServer {
 public:
  // Starts listening, in its own threads, which call the handler. Throws std::runtime_error when it
  // cannot listen.
  HttpServer(ServerOptions options, RequestHandler handler);
  ~HttpServer();
  HttpServer(const HttpServer&) = delete;
  HttpServer& operator=(const HttpServer&) = delete;

  std::uint16_t Port() const;
  int Connections() const;  // open connections
  // Refuses new connections and waits up to kStopGraceMs for running requests; slower ones are
  // abandoned.
  void Stop();

 private:
  struct State;
  std::unique_ptr<State> state_;
};

// Whether something listens on this port of the loopback address.
bool Answers(std::uint16_t port);

}  // namespace tonadex::server
