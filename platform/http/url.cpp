#include "platform/http/url.h"

#include <algorithm>
#include <charconv>
#include <cstddef>
#include <cstdint>
#include <iterator>
#include <system_error>

#include "net/http.h"

namespace tonadex::platform {
namespace {

struct Scheme {
  std::string_view start, port;
  bool encrypted;
};
constexpr Scheme kSchemes[] = {{"http://", "80", false}, {"https://", "443", true}};

// Servers and proxies reject these in a request line; everything else is sent unchanged.
std::string EscapeTarget(std::string_view typed) {
  constexpr std::string_view kRejected(" \r\n\0", 4);
  constexpr std::string_view kEscapes[] = {"%20", "%0D", "%0A", "%00"};
  std::string target;
  for (const char& c : typed) {
    const std::size_t at = kRejected.find(c);
    target += at == kRejected.npos ? std::string_view(&c, 1) : kEscapes[at];
  }
  return target;
}

bool IsHostText(std::string_view authority) {
  return std::ranges::all_of(authority, [](char c) { return c > ' ' && c < '\x7f' && c != '@'; });
}

bool IsPort(std::string_view text) {
  std::uint16_t number = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
  return error == std::errc() && end == text.data() + text.size();
}

// Splits "host:port" or "[address]:port". False for anything else.
bool SplitAuthority(Url& url, std::string_view defaultPort) {
  const std::string_view text = url.authority;
  const std::size_t bracket = text.starts_with('[') ? text.find(']') : 0;
  if (bracket == text.npos) {
    return false;
  }
  const std::size_t hostEnd = bracket == 0 ? std::min(text.find(':'), text.size()) : bracket + 1;
  url.host = bracket == 0 ? text.substr(0, hostEnd) : text.substr(1, bracket - 1);
  const std::string_view rest = text.substr(hostEnd);  // ":port", ":" or nothing
  url.port = rest.size() > 1 ? rest.substr(1) : defaultPort;
  return !url.host.empty() && (rest.empty() || rest.front() == ':');
}

}  // namespace

Url ParseUrl(std::string_view text) {
  const Scheme* scheme = std::ranges::find_if(
      kSchemes, [text](const Scheme& known) { return text.starts_with(known.start); });
  if (scheme == std::end(kSchemes)) {
    throw net::TransferError("La dirección del servidor debe empezar por http:// o https://");
  }
  text.remove_prefix(scheme->start.size());
  const std::size_t authorityEnd = std::min(text.find_first_of("/?#"), text.size());
  Url url;
  url.encrypted = scheme->encrypted;
  url.authority = text.substr(0, authorityEnd);
  if (!IsHostText(url.authority) || !SplitAuthority(url, scheme->port)) {
    throw net::TransferError("La dirección del servidor no es válida");
  }
  if (!IsPort(url.port)) {
    throw net::TransferError("El puerto del servidor no es válido");
  }
  url.target = EscapeTarget(text.substr(authorityEnd));
  if (!url.target.starts_with('/')) {
    url.target.insert(0, 1, '/');
  }
  return url;
}

}  // namespace tonadex::platform
