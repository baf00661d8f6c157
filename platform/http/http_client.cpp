#include "platform/http/http_client.h"

#include <utility>  // Asio's coroutines use std::exchange without including it

#include <boost/asio/co_spawn.hpp>
#include <boost/asio/error.hpp>
#include <boost/asio/io_context.hpp>
#include <boost/asio/ip/tcp.hpp>
#include <boost/asio/redirect_error.hpp>
#include <boost/asio/use_awaitable.hpp>
#include <boost/asio/write.hpp>
#include <boost/beast/core/buffers_to_string.hpp>
#include <boost/beast/core/flat_buffer.hpp>
#include <boost/beast/core/tcp_stream.hpp>
#include <boost/beast/http/empty_body.hpp>
#include <boost/beast/http/parser.hpp>
#include <boost/beast/http/string_body.hpp>
#include <boost/beast/http/write.hpp>
#include <cstdint>
#include <exception>
#include <future>
#include <memory>
#include <optional>
#include <sstream>
#include <thread>
#include <vector>

#include "core/error_words.h"
#include "core/windows1252.h"
#include "platform/http/tls.h"
#include "platform/http/url.h"

namespace tonadex::platform {
namespace {

namespace asio = boost::asio;
namespace beast = boost::beast;
namespace http = boost::beast::http;
using asio::ip::tcp;
using ErrorCode = boost::system::error_code;
using Clock = std::chrono::steady_clock;

constexpr std::size_t kReadBytes = std::size_t{64} << 10;

struct ErrorWords {
  ErrorCode code;
  const char* words;
};

net::TransferError Late() {
  return net::TransferError("El servidor tarda demasiado en dar la respuesta entera");
}

net::TransferError ToTransferError(const ErrorCode& code) {
  const ErrorWords known[] = {
      {beast::error::timeout, "El servidor no responde a tiempo"},
      {asio::error::connection_refused, "No hay ningún servidor en esa dirección"},
      {asio::error::host_not_found, "No se encuentra el servidor"},
      {asio::error::host_not_found_try_again, "No se encuentra el servidor"},
      {asio::error::no_data, "No se encuentra el servidor"},
      {http::error::body_limit, "La respuesta del servidor es demasiado grande"},
      {http::error::buffer_overflow, "La respuesta del servidor es demasiado grande"},
      {http::error::partial_message, "La respuesta del servidor está cortada"},
      {http::error::end_of_stream, "El servidor ha cerrado la conexión sin responder"},
      {asio::error::connection_reset, "El servidor ha cortado la conexión"},
      {asio::error::connection_aborted, "El servidor ha cortado la conexión"},
      {asio::error::broken_pipe, "El servidor ha cortado la conexión"},
  };
  for (const ErrorWords& error : known) {
    if (error.code == code) {
      return net::TransferError(error.words);
    }
  }
  if (code.category() != make_error_code(http::error::bad_version).category()) {
    return net::TransferError("No hay conexión con el servidor (" +
                              core::ToUtf8(core::ErrorWords(std::error_code(code))) + ")");
  }
  const ErrorWords malformed[] = {
      {http::error::bad_version, " (no es HTTP)"},
      {http::error::header_limit, " (cabecera demasiado larga)"},
      {http::error::bad_content_length, " (longitud mal escrita)"},
      {http::error::bad_chunk, " (trozo mal escrito)"},
      {http::error::bad_chunk_extension, " (trozo mal escrito)"},
  };
  std::string words = "La respuesta del servidor no se entiende";
  for (const ErrorWords& error : malformed) {
    words += error.code == code ? error.words : "";
  }
  return net::TransferError(words);
}

// Waits in slices of pumpInterval until `finished(slice)` returns true. Throws at `end`.
template <typename Finished>
void PumpUntil(const HttpCallbacks& callbacks, const HttpLimits& limits, Clock::time_point end,
               Finished&& finished) {
  while (!finished(limits.pumpInterval)) {
    if (Clock::now() > end) {
      throw Late();
    }
    if (callbacks.pump) {
      callbacks.pump();
    }
  }
}

using Endpoints = std::vector<tcp::endpoint>;

struct Lookup {
  ErrorCode error;
  Endpoints endpoints;
};

// The system's name look-up cannot be cancelled and has no time-out, so it runs in a detached
// thread that may outlive the request.
std::future<Lookup> StartLookup(const Url& url) {
  auto answer = std::make_shared<std::promise<Lookup>>();
  std::future<Lookup> future = answer->get_future();
  std::thread([answer, host = url.host, port = url.port] {
    Lookup lookup;
    asio::io_context context;
    tcp::resolver resolver(context);
    for (const auto& entry : resolver.resolve(host, port, lookup.error)) {
      lookup.endpoints.push_back(entry.endpoint());
    }
    answer->set_value(std::move(lookup));
  }).detach();
  return future;
}

Endpoints Resolve(const Url& url, Clock::time_point start, const HttpCallbacks& callbacks,
                  const HttpLimits& limits) {
  std::future<Lookup> future = StartLookup(url);
  PumpUntil(callbacks, limits, start + limits.totalTimeout, [&](std::chrono::milliseconds slice) {
    if (future.wait_for(slice) == std::future_status::ready) {
      return true;
    }
    if (Clock::now() > start + limits.connectTimeout) {
      throw boost::system::system_error(beast::error::timeout);
    }
    return false;
  });
  Lookup lookup = future.get();
  if (lookup.error) {
    throw boost::system::system_error(lookup.error);
  }
  return std::move(lookup.endpoints);
}

std::string RequestText(const Url& url) {
  http::request<http::empty_body> request(http::verb::get, url.target, 11);
  request.set(http::field::host, url.authority);
  request.set(http::field::user_agent, "Tonadex");
  request.set(http::field::accept, "*/*");
  request.set(http::field::connection, "close");
  std::ostringstream text;
  text << request;
  return std::move(text).str();
}

struct HttpReply {
  int status = 0;
  std::string body;
};

struct Transfer {
  Url url;
  Endpoints endpoints;
  Clock::time_point start;
  const HttpCallbacks& callbacks;
  const HttpLimits& limits;
};

using Parser = http::response_parser<http::string_body>;

void TellProgress(const Parser& parser, const HttpCallbacks& callbacks) {
  if (callbacks.progress && parser.is_header_done()) {
    const auto total = parser.content_length();
    callbacks.progress(parser.get().body().size(),
                       total ? std::optional<std::uint64_t>(*total) : std::nullopt);
  }
}

// An interim reply (1xx) has no body and precedes the final one. After 101 (switching protocols)
// the data is not HTTP.
bool IsInterim(const Parser& parser) {
  const unsigned status = parser.get().result_int();
  return parser.is_done() && status / 100 == 1 && status != 101;
}

void StartReply(std::optional<Parser>& parser, const HttpLimits& limits) {
  parser.emplace();
  parser->body_limit(limits.maxBodyBytes);
}

// Feeds the received bytes to the parser; an incomplete line stays in the buffer. The parser limits
// the size of header and body, but not of chunk extensions and trailers.
void Parse(std::optional<Parser>& parser, beast::flat_buffer& buffer, const HttpLimits& limits) {
  ErrorCode error;
  while (!error && !parser->is_done() && buffer.size() > 0) {
    // Not for the header: an eager parser would ignore the body limit and allocate the announced
    // length.
    parser->eager(parser->is_header_done());
    buffer.consume(parser->put(buffer.data(), error));
    if (!error && IsInterim(*parser)) {
      StartReply(parser, limits);
    }
  }
  if (error == http::error::need_more) {
    error = buffer.size() > limits.maxLineBytes ? http::error::buffer_overflow : ErrorCode();
  }
  if (error) {
    throw boost::system::system_error(error);
  }
}

// Handles the end of the connection: before the reply, inside it, or, without a stated length, at
// its end. `cut`: the connection may have been cut by someone other than the server.
void ParseEnd(Parser& parser, bool cut) {
  ErrorCode error = http::error::end_of_stream;
  if (parser.got_some()) {
    error = http::error::partial_message;
    cut ? void() : parser.put_eof(error);
  }
  if (error) {
    throw boost::system::system_error(error);
  }
}

struct Connection {
  explicit Connection(const asio::any_io_executor& executor) : stream(executor) {}

  beast::tcp_stream stream;
  std::unique_ptr<TlsSession> tls;  // null for http
  beast::flat_buffer received;      // decrypted
};

asio::awaitable<void> Send(Connection& connection, std::string_view bytes,
                           const HttpLimits& limits) {
  connection.stream.expires_after(limits.idleTimeout);
  co_await asio::async_write(connection.stream, asio::buffer(bytes.data(), bytes.size()),
                             asio::use_awaitable);
}

// Decrypts what has arrived and sends the handshake and alert bytes that result.
asio::awaitable<void> Decrypt(Connection& connection, std::string_view sealed,
                              const HttpLimits& limits) {
  std::string answer, plain;
  connection.tls->Receive(sealed, answer, plain);
  const auto room = connection.received.prepare(plain.size());
  connection.received.commit(asio::buffer_copy(room, asio::buffer(plain)));
  co_await Send(connection, answer, limits);
}

// A single read, because the idle time-out applies to each; when encrypted, it may append nothing
// to `received`. Returns true at the end of the connection.
asio::awaitable<bool> Read(Connection& connection, const HttpLimits& limits) {
  beast::flat_buffer sealed;
  beast::flat_buffer& buffer = connection.tls ? sealed : connection.received;
  ErrorCode error;
  connection.stream.expires_after(limits.idleTimeout);
  buffer.commit(co_await connection.stream.async_read_some(
      buffer.prepare(kReadBytes), asio::redirect_error(asio::use_awaitable, error)));
  if (error && error != asio::error::eof) {
    throw boost::system::system_error(error);
  }
  if (connection.tls && !error) {
    const std::string bytes = beast::buffers_to_string(sealed.cdata());
    co_await Decrypt(connection, bytes, limits);
  }
  co_return error || (connection.tls && connection.tls->Ended());
}

asio::awaitable<void> Handshake(Connection& connection, const HttpLimits& limits) {
  const std::string_view nothing;
  co_await Decrypt(connection, nothing, limits);
  while (!connection.tls->Connected()) {
    if (co_await Read(connection, limits)) {
      throw net::TransferError(kNoTls);
    }
  }
}

asio::awaitable<HttpReply> ReadReply(Connection& connection, const Transfer& transfer) {
  std::optional<Parser> parser;
  StartReply(parser, transfer.limits);
  while (!parser->is_done()) {
    const bool ended = co_await Read(connection, transfer.limits);
    Parse(parser, connection.received, transfer.limits);
    if (ended && !parser->is_done()) {
      ParseEnd(*parser, connection.tls && !connection.tls->Ended());
    }
    TellProgress(*parser, transfer.callbacks);
  }
  co_return HttpReply{static_cast<int>(parser->get().result_int()),
                      std::move(parser->get().body())};
}

asio::awaitable<HttpReply> Run(const Transfer& transfer) {
  Connection connection(co_await asio::this_coro::executor);
  connection.stream.expires_at(transfer.start + transfer.limits.connectTimeout);
  co_await connection.stream.async_connect(transfer.endpoints, asio::use_awaitable);
  std::string request = RequestText(transfer.url);
  if (transfer.url.encrypted) {
    connection.tls = MakeTlsSession(transfer.url.host);
    co_await Handshake(connection, transfer.limits);
    request = connection.tls->Encrypted(request);
  }
  co_await Send(connection, request, transfer.limits);
  co_return co_await ReadReply(connection, transfer);
}

HttpReply Perform(const Transfer& transfer) {
  std::exception_ptr failure;
  HttpReply reply;
  bool done = false;
  asio::io_context context(1);  // last: its destructor ends the transfer, which uses the above
  asio::co_spawn(context, Run(transfer), [&](std::exception_ptr error, HttpReply received) {
    failure = std::move(error);
    reply = std::move(received);
    done = true;
  });
  const Clock::time_point end = transfer.start + transfer.limits.totalTimeout;
  PumpUntil(transfer.callbacks, transfer.limits, end, [&](std::chrono::milliseconds slice) {
    context.run_for(slice);
    return done;
  });
  if (failure) {
    std::rethrow_exception(failure);
  }
  return reply;
}

}  // namespace

HttpClient::HttpClient(HttpCallbacks callbacks, HttpLimits limits)
    : callbacks_(std::move(callbacks)), limits_(limits) {}

std::string HttpClient::Get(std::string_view url) {
  const Clock::time_point start = Clock::now();
  lastStatus_ = 0;
  Url parsed = ParseUrl(url);
  try {
    Endpoints endpoints = Resolve(parsed, start, callbacks_, limits_);
    HttpReply reply =
        Perform({std::move(parsed), std::move(endpoints), start, callbacks_, limits_});
    lastStatus_ = reply.status;
    return std::move(reply.body);
  } catch (const boost::system::system_error& error) {
    throw ToTransferError(error.code());
  }
}

}  // namespace tonadex::platform
