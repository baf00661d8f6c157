#include "platform/http/http_client.h"

#include <utility>  // Asio's coroutines use std::exchange without including it

#include <boost/asio/co_spawn.hpp>
#include <boost/asio/error.hpp>
#include <boost/asio/io_context.hpp>
#include <boost/asio/ip/tcp.hpp>
#include <boost/asio/redirect_error.hpp>
#include <boost/asio/use_awaitable.hpp>
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
#include <thread>
#include <vector>

#include "core/error_words.h"
#include "core/windows1252.h"
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

http::request<http::empty_body> MakeRequest(const Url& url) {
  http::request<http::empty_body> request(http::verb::get, url.target, 11);
  request.set(http::field::host, url.authority);
  request.set(http::field::user_agent, "Tonadex");
  request.set(http::field::accept, "*/*");
  request.set(http::field::connection, "close");
  return request;
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

void ParseEnd(Parser& parser) {
  ErrorCode error = http::error::end_of_stream;
  if (parser.got_some()) {
    parser.put_eof(error);
  }
  if (error) {
    throw boost::system::system_error(error);
  }
}

// Reads in pieces, because the idle time-out applies to each read.
asio::awaitable<HttpReply> ReadReply(beast::tcp_stream& stream, const Transfer& transfer) {
  beast::flat_buffer buffer;
  std::optional<Parser> parser;
  StartReply(parser, transfer.limits);
  while (!parser->is_done()) {
    ErrorCode error;
    stream.expires_after(transfer.limits.idleTimeout);
    const std::size_t count = co_await stream.async_read_some(
        buffer.prepare(kReadBytes), asio::redirect_error(asio::use_awaitable, error));
    buffer.commit(count);
    if (error && error != asio::error::eof) {
      throw boost::system::system_error(error);
    }
    Parse(parser, buffer, transfer.limits);
    if (error && !parser->is_done()) {
      ParseEnd(*parser);
    }
    TellProgress(*parser, transfer.callbacks);
  }
  co_return HttpReply{static_cast<int>(parser->get().result_int()),
                      std::move(parser->get().body())};
}

asio::awaitable<HttpReply> Run(const Transfer& transfer) {
  beast::tcp_stream stream(co_await asio::this_coro::executor);
  stream.expires_at(transfer.start + transfer.limits.connectTimeout);
  co_await stream.async_connect(transfer.endpoints, asio::use_awaitable);
  stream.expires_after(transfer.limits.idleTimeout);
  const auto request = MakeRequest(transfer.url);
  co_await http::async_write(stream, request, asio::use_awaitable);
  co_return co_await ReadReply(stream, transfer);
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
