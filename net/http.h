#pragma once

#include <stdexcept>
#include <string>
#include <string_view>

namespace tonadex::net {

// A transfer that brought no reply: no connection, time-out, broken or oversized reply.
class TransferError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;  // what(): UTF-8, for people
};

// A blocking HTTP GET. While it runs only painting goes on: no handler, no timer, no second call.
class HttpGet {
 public:
  virtual ~HttpGet() = default;
  // `url` is sent as typed (Windows-1252 bytes), save that blanks, CR, LF and NUL are escaped.
  // Gives the body's bytes whatever the reply's status. Throws TransferError.
  virtual std::string Get(std::string_view url) = 0;
};

}  // namespace tonadex::net
