#include "server/http_server.h"

#include <utility>  // Asio's coroutines use std::exchange without including it

#include <algorithm>
#include <array>
#include <atomic>
#include <boost/asio/bind_executor.hpp>
#include <boost/asio/buffer.hpp>
#include <boost/asio/co_spawn.hpp>
#include <boost/asio/detached.hpp>
#include <boost/asio/io_context.hpp>
#include <boost/asio/ip/tcp.hpp>
#include <boost/asio/redirect_error.hpp>
#include <boost/asio/steady_timer.hpp>
#include <boost/asio/strand.hpp>
#include <boost/asio/use_awaitable.hpp>
#include <boost/asio/write.hpp>
#include <boost/beast/core/tcp_stream.hpp>
#include <boost/beast/http/status.hpp>
#include <condition_variable>
#include <mutex>
#include <optional>
#include <random>
#include <stdexcept>
#include <system_error>
#include <thread>
#include <vector>

#include "core/error_words.h"
#include "core/windows1252.h"
#include "server/api/problem.h"
#include "server/client_address.h"
#include "server/places.h"
#include "server/reply_budget.h"
#include "server/request_head.h"

namespace tonadex::server {
namespace {

namespace asio = boost::asio;
namespace beast = boost::beast;
namespace http = boost::beast::http;
using asio::ip::tcp;
using ErrorCode = boost::system::error_code;

constexpr std::size_t kReadBytes = std::size_t{8} << 10;
constexpr int kGone = -1;       // in place of a status: the client is gone, no reply is sent
constexpr int kMinThreads = 4;  // an upload blocks its thread while it syncs

std::size_t BodyBytes(const Reply& reply) {
  std::size_t bytes = 0;
  for (const SharedText& text : reply.body) {
    bytes += text->size();
  }
  return bytes;
}

std::string ReplyHead(const Reply& reply, bool keepAlive) {
  const auto reason = http::obsolete_reason(static_cast<http::status>(reply.status));
  std::string head = "HTTP/1.1 " + std::to_string(reply.status) + " ";
  head.append(reason.data(), reason.size());
  head.append("\r\nServer: Tonadex\r\nContent-Type: ").append(reply.contentType);
  if (reply.status != 304) {  // which would have to state the length of the omitted text
    head.append("\r\nContent-Length: ").append(std::to_string(BodyBytes(reply)));
  }
  head.append("\r\nX-Content-Type-Options: nosniff\r\nCache-Control: ");
  head.append(reply.maxAgeSeconds > 0    ? "max-age=" + std::to_string(reply.maxAgeSeconds)
              : reply.maxAgeSeconds == 0 ? "no-store"
                                         : "no-cache");
  head.append("\r\n").append(reply.fields);
  return head.append(keepAlive ? "Connection: keep-alive\r\n\r\n" : "Connection: close\r\n\r\n");
}

asio::ip::address PeerOf(const tcp::socket& socket) {
  ErrorCode error;
  return Plain(socket.remote_endpoint(error).address());
}

int ThreadCount(const ServerOptions& options) {
  const int cores = static_cast<int>(std::thread::hardware_concurrency());
  return options.threads > 0 ? options.threads : std::max(kMinThreads, 2 * cores);
}

std::uint64_t NextRandom() {
  thread_local std::mt19937_64 random{std::random_device{}()};
  return random();
}

// Whether the connection was reset. A client that has only shut down its sending side still waits
// for the reply.
bool IsReset(tcp::socket& socket) {
  char byte = 0;
  ErrorCode error;
  socket.receive(asio::buffer(&byte, 1), tcp::socket::message_peek, error);
  return error && error != asio::error::would_block && error != asio::error::eof;
}

}  // namespace

struct HttpServer::State {
  State(ServerOptions serverOptions, RequestHandler requestHandler)
      : options(std::move(serverOptions)), handler(std::move(requestHandler)) {}

  void Listen();
  void Start();
  void Stop();
  asio::awaitable<void> AcceptLoop();
  asio::awaitable<void> Serve(tcp::socket socket, Place connection, Place ofAddress);
  asio::awaitable<void> RefuseBusy(tcp::socket socket, Place refusal);
  asio::awaitable<std::optional<Parsed>> ReadRequest(beast::tcp_stream& stream,
                                                     std::string& buffer);
  asio::awaitable<int> ReadBody(beast::tcp_stream& stream, std::string& buffer, Parsed& parsed);
  asio::awaitable<bool> WriteReply(beast::tcp_stream& stream, const Reply& reply, bool keepAlive,
                                   bool bodyToo);
  asio::awaitable<void> Linger(beast::tcp_stream& stream);
  Reply Answer(Parsed& parsed, const asio::ip::address& address, tcp::socket& socket);
  void Note(const Parsed& parsed, const asio::ip::address& address, const Reply& reply,
            Clock::time_point start, std::string_view limit) const;
  void Admit(tcp::socket socket);
  bool Begin();
  void End();

  const ServerOptions options;
  const RequestHandler handler;
  std::atomic<bool> stopping{false};
  std::atomic<bool> aborting{false};  // the grace period is over: running requests are abandoned
  Places connections{options.maxConnections};
  Places refusals{kMaxRefusedConnections};
  // One place per connection; behind a proxy (from which all connections come) one per running
  // request.
  Places ofAddresses{options.maxConnectionsOfAddress};
  std::mutex mutex;
  std::condition_variable idle;
  int busy = 0;        // requests received but not answered completely; guarded by mutex
  bool ended = false;  // guarded by mutex
  ReplyBudget budget{options.maxReplyBytes};
  std::uint16_t port = 0;
  std::vector<std::thread> threads;
  asio::io_context context;  // owns the connections, which use the members above
  tcp::acceptor acceptor{asio::make_strand(context)};
};

void HttpServer::State::Listen() {
  const tcp::endpoint endpoint(asio::ip::make_address(options.address), options.port);
  acceptor.open(endpoint.protocol());
#ifndef _WIN32
  acceptor.set_option(tcp::acceptor::reuse_address(true));
#endif
  acceptor.bind(endpoint);
  acceptor.listen(asio::socket_base::max_listen_connections);
  port = acceptor.local_endpoint().port();
}

void HttpServer::State::Start() {
  asio::co_spawn(acceptor.get_executor(), AcceptLoop(), asio::detached);
  for (int i = ThreadCount(options); i > 0; --i) {
    threads.emplace_back([this] { context.run(); });
  }
}

void HttpServer::State::Stop() {
  stopping = true;
  asio::post(acceptor.get_executor(), [this] {
    ErrorCode ignored;
    acceptor.close(ignored);
  });
  {
    std::unique_lock lock(mutex);
    aborting =
        !idle.wait_for(lock, std::chrono::milliseconds(kStopGraceMs), [this] { return busy == 0; });
    ended = true;
  }
  context.stop();
  for (std::thread& thread : threads) {
    thread.join();
  }
  threads.clear();
  ErrorCode ignored;
  acceptor.close(ignored);  // in case that no thread has run to close it
}

// False when the server has stopped: a reply would be cut off.
bool HttpServer::State::Begin() {
  const std::lock_guard lock(mutex);
  busy += ended ? 0 : 1;
  return !ended;
}

void HttpServer::State::End() {
  const std::lock_guard lock(mutex);
  if (--busy == 0) {
    idle.notify_all();
  }
}

asio::awaitable<void> HttpServer::State::AcceptLoop() {
  asio::steady_timer pause(acceptor.get_executor());
  while (!stopping) {
    ErrorCode error;
    tcp::socket socket =
        co_await acceptor.async_accept(asio::any_io_executor(asio::make_strand(context)),
                                       asio::redirect_error(asio::use_awaitable, error));
    if (!error) {
      Admit(std::move(socket));
    } else if (!stopping) {  // usually out of file handles
      pause.expires_after(std::chrono::milliseconds(kAcceptRetryMs));
      co_await pause.async_wait(asio::redirect_error(asio::use_awaitable, error));
    }
  }
}

void HttpServer::State::Admit(tcp::socket socket) {
  const auto executor = socket.get_executor();
  Place connection = connections.Take();
  Place ofAddress = options.behindProxy ? connection : ofAddresses.Take(ClientOf(PeerOf(socket)));
  if (connection && ofAddress) {
    asio::co_spawn(executor, Serve(std::move(socket), std::move(connection), std::move(ofAddress)),
                   asio::detached);
  } else if (Place refusal = refusals.Take()) {
    asio::co_spawn(executor, RefuseBusy(std::move(socket), std::move(refusal)), asio::detached);
  }
}

// Appends the bytes received.
asio::awaitable<ErrorCode> ReadMore(beast::tcp_stream& stream, std::string& buffer) {
  const std::size_t size = buffer.size();
  buffer.resize(size + kReadBytes);
  ErrorCode error;
  const std::size_t count =
      co_await stream.async_read_some(asio::buffer(buffer.data() + size, kReadBytes),
                                      asio::redirect_error(asio::use_awaitable, error));
  buffer.resize(size + count);
  co_return error;
}

// Reads in slices with a time limit each. Returns 0, the status of a refusal, or kGone.
asio::awaitable<int> HttpServer::State::ReadBody(beast::tcp_stream& stream, std::string& buffer,
                                                 Parsed& parsed) {
  ErrorCode error;
  if (parsed.asksForBody && buffer.size() < parsed.bodyBytes) {
    constexpr std::string_view kContinue = "HTTP/1.1 100 Continue\r\n\r\n";
    co_await asio::async_write(stream, asio::buffer(kContinue.data(), kContinue.size()),
                               asio::redirect_error(asio::use_awaitable, error));
  }
  while (!error && buffer.size() < parsed.bodyBytes) {
    const std::size_t slice = std::min(parsed.bodyBytes, buffer.size() + kSliceBytes);
    stream.expires_after(options.slowClient);
    while (!error && buffer.size() < slice) {
      error = co_await ReadMore(stream, buffer);
    }
  }
  parsed.body = buffer.substr(0, parsed.bodyBytes);
  buffer.erase(0, parsed.bodyBytes);
  co_return !error ? 0 : error == asio::error::eof ? 400 : kGone;
}

// Empty when the client is gone or too slow before a whole request has arrived. Bytes after the
// request stay in the buffer.
asio::awaitable<std::optional<Parsed>> HttpServer::State::ReadRequest(beast::tcp_stream& stream,
                                                                      std::string& buffer) {
  stream.expires_after(options.slowClient);
  std::size_t searched = 0;
  for (;;) {
    if (const std::size_t empty = EmptyLineBytes(buffer); empty > 0) {
      buffer.erase(0, empty);
      searched = 0;
    }
    const std::size_t end = buffer.find("\r\n\r\n", searched);
    const std::size_t headBytes = end == buffer.npos ? buffer.size() : end + 4;
    if (const int status = LimitRefusal(buffer, headBytes); status != 0) {
      co_return Refused(status);
    }
    if (end != buffer.npos) {
      Parsed parsed = ParseHead(std::string_view(buffer).substr(0, headBytes));
      buffer.erase(0, headBytes);
      const int fault = co_await ReadBody(stream, buffer, parsed);
      if (fault == kGone) {
        co_return std::nullopt;
      }
      co_return fault == 0 ? std::move(parsed) : Refused(fault, std::move(parsed.target));
    }
    searched = buffer.size() < 3 ? 0 : buffer.size() - 3;
    if (const ErrorCode error = co_await ReadMore(stream, buffer)) {
      const bool half = error == asio::error::eof && !buffer.empty();
      co_return half ? std::optional(Refused(400)) : std::nullopt;
    }
  }
}

// Writes in slices with a time limit each, so that a slow client has enough time and a dead one is
// dropped.
asio::awaitable<bool> HttpServer::State::WriteReply(beast::tcp_stream& stream, const Reply& reply,
                                                    bool keepAlive, bool bodyToo) {
  const std::string head = ReplyHead(reply, keepAlive);
  std::string_view first = head;
  const std::size_t texts = bodyToo ? reply.body.size() : 0;  // 0 for a 304, too
  for (std::size_t i = 0; i == 0 || i < texts; ++i) {
    std::string_view rest = i < texts ? std::string_view(*reply.body[i]) : std::string_view();
    do {
      const std::string_view slice = rest.substr(0, kSliceBytes);
      const std::array<asio::const_buffer, 2> buffers = {asio::buffer(first.data(), first.size()),
                                                         asio::buffer(slice.data(), slice.size())};
      stream.expires_after(options.slowClient);
      ErrorCode error;
      co_await asio::async_write(stream, buffers, asio::redirect_error(asio::use_awaitable, error));
      if (error) {
        co_return false;
      }
      first = {};
      rest.remove_prefix(slice.size());
    } while (!rest.empty());
  }
  co_return true;
}

// Closing a socket with unread input sends RST, which may discard the reply; drain the input first.
asio::awaitable<void> HttpServer::State::Linger(beast::tcp_stream& stream) {
  ErrorCode error;
  stream.socket().shutdown(tcp::socket::shutdown_send, error);
  stream.expires_after(std::chrono::milliseconds(kLingerMs));
  std::array<char, 4096> discarded;
  for (std::size_t total = 0; !error && total < kMaxLingerBytes;) {
    total += co_await stream.async_read_some(asio::buffer(discarded),
                                             asio::redirect_error(asio::use_awaitable, error));
  }
}

Reply HttpServer::State::Answer(Parsed& parsed, const asio::ip::address& address,
                                tcp::socket& socket) {
  if (parsed.refusal != 0) {
    return RefusalReply(parsed.refusal, parsed.target);
  }
  if (options.ownMachineOnly && parsed.foreign) {
    return RefusalReply(403, parsed.target);
  }
  bool gone = false;  // the system reports a reset only once
  const auto abandoned = [&] { return gone = gone || aborting || IsReset(socket); };
  try {
    return handler({parsed.target, ClientOf(address), Clock::now(), NextRandom(), abandoned,
                    parsed.post, std::move(parsed.body), parsed.contentType, parsed.ifNoneMatch,
                    parsed.acceptEncoding});
  } catch (const std::exception&) {
    return RefusalReply(500, parsed.target);
  }
}

void HttpServer::State::Note(const Parsed& parsed, const asio::ip::address& address,
                             const Reply& reply, Clock::time_point start,
                             std::string_view limit) const {
  if (options.served) {
    const std::string_view method = parsed.refusal != 0 ? ""
                                    : parsed.head       ? "HEAD"
                                    : parsed.post       ? "POST"
                                                        : "GET";
    options.served({method, parsed.target, address.to_string(), reply.status,
                    parsed.head ? 0 : BodyBytes(reply), Clock::now() - start, limit});
  }
}

asio::awaitable<void> HttpServer::State::Serve(tcp::socket socket, Place, Place) {
  ErrorCode error;
  const asio::ip::address peer = PeerOf(socket);
  socket.set_option(tcp::no_delay(true), error);
  socket.non_blocking(true, error);  // IsReset must not block
  beast::tcp_stream stream(std::move(socket));
  std::string buffer;
  for (bool open = true; open;) {
    std::optional<Parsed> parsed = co_await ReadRequest(stream, buffer);
    if (!parsed) {
      co_return;
    }
    if (!Begin()) {
      co_return;
    }
    const Clock::time_point start = Clock::now();
    const auto forwarded = options.behindProxy ? LastForwarded(parsed->forwardedFor) : std::nullopt;
    const asio::ip::address address = forwarded.value_or(peer);
    const Place place = options.behindProxy ? ofAddresses.Take(ClientOf(address)) : nullptr;
    const bool crowded = options.behindProxy && !place;
    Reply reply =
        crowded ? RefusalReply(503, parsed->target) : Answer(*parsed, address, stream.socket());
    const Place room = budget.Take(reply.body);
    if (!room) {
      reply = RefusalReply(503, parsed->target);
    }
    open = parsed->keepAlive && !stopping;
    const bool written = co_await WriteReply(stream, reply, open, !parsed->head);
    Note(*parsed, address, reply, start, crowded ? "simultaneas" : room ? "" : "memoria");
    End();
    if (!written) {
      co_return;
    }
  }
  co_await Linger(stream);
}

asio::awaitable<void> HttpServer::State::RefuseBusy(tcp::socket socket, Place) {
  beast::tcp_stream stream(std::move(socket));
  const asio::ip::address peer = PeerOf(stream.socket());
  const Reply reply = RefusalReply(503, {});
  Note(Refused(503), peer, reply, Clock::now(), "conexiones");
  if (co_await WriteReply(stream, reply, false, true)) {
    co_await Linger(stream);
  }
}

HttpServer::HttpServer(ServerOptions options, RequestHandler handler)
    : state_(std::make_unique<State>(std::move(options), std::move(handler))) {
  try {
    state_->Listen();
  } catch (const boost::system::system_error& error) {
    throw std::runtime_error("no se puede escuchar en " + state_->options.address + ", puerto " +
                             std::to_string(state_->options.port) + ": " +
                             core::ToUtf8(core::ErrorWords(std::error_code(error.code()))));
  }
  try {
    state_->Start();
  } catch (const std::system_error& error) {  // not all threads could be started
    state_->Stop();
    throw std::runtime_error("no se pueden crear los hilos del servidor: " +
                             core::ToUtf8(core::ErrorWords(error.code())));
  }
}

HttpServer::~HttpServer() {
  Stop();
}

std::uint16_t HttpServer::Port() const {
  return state_->port;
}

int HttpServer::Connections() const {
  return state_->connections.Taken();
}

void HttpServer::Stop() {
  if (!state_->threads.empty()) {
    state_->Stop();
  }
}

bool Answers(std::uint16_t port) {
  asio::io_context context;
  tcp::socket socket(context);
  ErrorCode error;
  socket.connect({asio::ip::address_v4::loopback(), port}, error);
  return !error;
}

}  // namespace tonadex::server
