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

TransferError ToTransferError(const ErrorCode& code) {
  const ErrorWords known[] = {
      {beast::error::timeout, "El servidor no responde a tiempo"},
      {asio::error::connection_refused, "No hay ningún servidor en esa dirección"},
      {asio::error::host_not_found, "No se encuentra el servidor"},
      {asio::error::host_not_found_try_again, "No se encuentra el servidor"},
      {http::error::body_limit, "La respuesta del servidor es demasiado grande"},
      {http::error::partial_message, "La respuesta del servidor está cortada"},
      {http::error::end_of_stream, "El servidor ha cerrado la conexión sin responder"},
      {asio::error::connection_reset, "El servidor ha cortado la conexión"},
  };
  for (const ErrorWords& error : known) {
    if (error.code == code) {
      return TransferError(error.words);
    }
  }
  const bool reply = code.category() == make_error_code(http::error::bad_version).category();
  return TransferError(
      (reply ? "La respuesta del servidor no se entiende (" : "No hay conexión con el servidor (") +
      core::ToUtf8(core::ErrorWords(std::error_code(code))) + ")");
}

// Waits in slices of pumpInterval until `finished(slice)` says so.
template <typename Finished>
void PumpUntil(const HttpCallbacks& callbacks, const HttpLimits& limits, Finished&& finished) {
  while (!finished(limits.pumpInterval)) {
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

// The system's name look-up can neither be cancelled nor timed: it runs in a thread that is left
// behind when it takes too long.
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

Endpoints Resolve(const Url& url, Clock::time_point deadline, const HttpCallbacks& callbacks,
                  const HttpLimits& limits) {
  std::future<Lookup> future = StartLookup(url);
  PumpUntil(callbacks, limits, [&](std::chrono::milliseconds slice) {
    if (future.wait_for(slice) == std::future_status::ready) {
      return true;
    }
    if (Clock::now() > deadline) {
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
  Clock::time_point connectDeadline;
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

// Feeds what has come to the parser; an incomplete rest stays in the buffer.
void Parse(Parser& parser, beast::flat_buffer& buffer) {
  ErrorCode error;
  while (!error && !parser.is_done() && buffer.size() > 0) {
    // An eager parser goes on past a Content-Length above the limit, and makes room for it.
    parser.eager(parser.is_header_done());
    buffer.consume(parser.put(buffer.data(), error));
  }
  if (error && error != http::error::need_more) {
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

bool Drips(std::size_t received, Clock::duration taken, const HttpLimits& limits) {
  const double seconds = std::chrono::duration<double>(taken).count();
  return taken > limits.dripTimeout &&
         static_cast<double>(received) < seconds * static_cast<double>(limits.leastBytesPerSecond);
}

// Reads piece by piece, so that each has the whole time-out.
asio::awaitable<HttpReply> ReadReply(beast::tcp_stream& stream, const Transfer& transfer) {
  beast::flat_buffer buffer;
  Parser parser;
  parser.body_limit(transfer.limits.maxBodyBytes);
  const Clock::time_point start = Clock::now();
  std::size_t received = 0;
  while (!parser.is_done()) {
    ErrorCode error;
    stream.expires_after(transfer.limits.idleTimeout);
    const std::size_t count = co_await stream.async_read_some(
        buffer.prepare(kReadBytes), asio::redirect_error(asio::use_awaitable, error));
    buffer.commit(count);
    received += count;
    if (!error && Drips(received, Clock::now() - start, transfer.limits)) {
      error = beast::error::timeout;
    }
    if (error && error != asio::error::eof) {
      throw boost::system::system_error(error);
    }
    Parse(parser, buffer);
    if (error && !parser.is_done()) {
      ParseEnd(parser);
    }
    TellProgress(parser, transfer.callbacks);
  }
  co_return HttpReply{static_cast<int>(parser.get().result_int()), std::move(parser.get().body())};
}

asio::awaitable<HttpReply> Run(const Transfer& transfer) {
  beast::tcp_stream stream(co_await asio::this_coro::executor);
  stream.expires_at(transfer.connectDeadline);
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
  asio::io_context context(1);  // last: it owns the running transfer, which uses all of the above
  asio::co_spawn(context, Run(transfer), [&](std::exception_ptr error, HttpReply received) {
    failure = std::move(error);
    reply = std::move(received);
    done = true;
  });
  PumpUntil(transfer.callbacks, transfer.limits, [&](std::chrono::milliseconds slice) {
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
  const Clock::time_point deadline = Clock::now() + limits_.connectTimeout;
  lastStatus_ = 0;
  Url parsed = ParseUrl(url);
  try {
    Endpoints endpoints = Resolve(parsed, deadline, callbacks_, limits_);
    HttpReply reply =
        Perform({std::move(parsed), std::move(endpoints), deadline, callbacks_, limits_});
    lastStatus_ = reply.status;
    return std::move(reply.body);
  } catch (const boost::system::system_error& error) {
    throw ToTransferError(error.code());
  }
}

}  // namespace tonadex::platform
