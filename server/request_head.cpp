#include "server/request_head.h"

#include <algorithm>
#include <boost/asio/buffer.hpp>
#include <boost/asio/ip/address_v4.hpp>
#include <boost/beast/http/empty_body.hpp>
#include <boost/beast/http/parser.hpp>
#include <cstdint>
#include <limits>
#include <utility>

#include "core/text.h"
#include "server/handler.h"
#include "server/limits.h"

namespace tonadex::server {
namespace {

namespace asio = boost::asio;
namespace http = boost::beast::http;
using core::Code;
using ErrorCode = boost::system::error_code;

// Escapes blanks and control characters between the first and the last blank of the request line:
// clients send the target as typed. NUL is kept and makes the request invalid.
std::string WithEscapedTarget(std::string_view head) {
  const std::string_view line = head.substr(0, head.find("\r\n"));
  const std::size_t first = line.find(' ');
  const std::size_t last = line.rfind(' ');
  std::string escaped;
  escaped.reserve(head.size());
  for (std::size_t i = 0; i < head.size(); ++i) {
    const char c = head[i];
    if (i > first && i < last && c != '\0' && (Code(c) <= ' ' || c == '\x7f')) {
      AppendEscaped(escaped, c);
    } else {
      escaped += c;
    }
  }
  return escaped;
}

using Fields = http::request_parser<http::empty_body>::value_type;

template <typename Name>
std::string_view Field(const Fields& request, Name name) {
  const auto value = request[name];
  return {value.data(), value.size()};
}

// The field's last line, which was added by the proxy in front of this server.
std::string_view LastForwardedFor(const Fields& request) {
  std::string_view last;
  const auto [begin, end] = request.equal_range("X-Forwarded-For");
  for (auto line = begin; line != end; ++line) {
    last = {line->value().data(), line->value().size()};
  }
  return last;
}

bool IsLoopbackHost(std::string_view host) {
  const std::string name(host.substr(0, host.rfind(':')));
  ErrorCode error;
  const auto address = asio::ip::make_address_v4(name, error);
  return name == "localhost" || (!error && address.is_loopback());
}

// A foreign web page can make a browser send requests to this machine, also through a host name
// that resolves to it. Browsers report that in these fields; programs send neither of the last two.
bool IsForeign(const Fields& request) {
  const std::string_view host = Field(request, http::field::host);
  const std::string_view origin = Field(request, http::field::origin);
  const std::string_view site = Field(request, "Sec-Fetch-Site");
  const bool own = (origin.empty() || origin == "http://" + std::string(host)) &&
                   (site.empty() || site == "none" || site == "same-origin");
  return !IsLoopbackHost(host) || !own;
}

// The status with which a request is refused, 0 if it is accepted. Only a POST may have a body,
// with a stated length.
int Refusal(const Fields& request, const Parsed& parsed) {
  const bool coded = request.count(http::field::transfer_encoding) != 0;
  if (!parsed.post && !parsed.head && request.method() != http::verb::get) {
    return 405;
  }
  if (request.count(http::field::host) > 1 || (!parsed.post && (coded || parsed.bodyBytes != 0))) {
    return 400;
  }
  if (parsed.post && (coded || request.count(http::field::content_length) == 0)) {
    return 411;
  }
  return parsed.bodyBytes > kMaxBodyBytes ? 413 : 0;
}

}  // namespace

Parsed Refused(int status, std::string target) {
  Parsed parsed;
  parsed.refusal = status;
  parsed.target = std::move(target);
  return parsed;
}

Parsed ParseHead(std::string_view head) {
  const std::string text = WithEscapedTarget(head);
  http::request_parser<http::empty_body> parser;
  parser.body_limit(std::numeric_limits<std::uint64_t>::max());  // the caller checks the length
  parser.header_limit(static_cast<std::uint32_t>(text.size() + 1));
  ErrorCode error;
  parser.put(asio::buffer(text), error);
  if (error || !parser.is_header_done()) {
    return Refused(400);
  }
  const auto& request = parser.get();
  Parsed parsed;
  parsed.target = std::string(request.target());
  parsed.head = request.method() == http::verb::head;
  parsed.post = request.method() == http::verb::post;
  parsed.bodyBytes = parser.content_length().value_or(0);
  parsed.refusal = Refusal(request, parsed);
  if (parsed.refusal != 0) {
    parsed.bodyBytes = 0;  // it is not read
    return parsed;
  }
  parsed.keepAlive = parser.keep_alive();
  parsed.foreign = IsForeign(request);
  parsed.asksForBody = core::ToLower(Field(request, http::field::expect)) == "100-continue";
  parsed.forwardedFor = std::string(LastForwardedFor(request));
  parsed.contentType = std::string(Field(request, http::field::content_type));
  parsed.ifNoneMatch = std::string(Field(request, http::field::if_none_match));
  parsed.acceptEncoding = std::string(Field(request, http::field::accept_encoding));
  return parsed;
}

std::size_t EmptyLineBytes(std::string_view buffer) {
  std::size_t bytes = 0;
  while (buffer.substr(bytes).starts_with("\r\n")) {
    bytes += 2;
  }
  return bytes;
}

int LimitRefusal(std::string_view buffer, std::size_t headBytes) {
  const std::size_t line = std::min(buffer.find('\n'), headBytes);
  return line > kMaxRequestLineBytes ? 414 : headBytes - line > kMaxFieldBytes ? 431 : 0;
}

}  // namespace tonadex::server
