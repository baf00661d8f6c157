#pragma once

#include <stdexcept>
#include <string>
#include <string_view>

namespace tonadex::net {

// A failed transfer: no connection, time-out, broken or oversized reply.
class TransferError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;  // what(): Spanish, UTF-8
};

// A blocking HTTP GET. Meanwhile windows are painted, but no handler, timer or second Get runs.
class HttpGet {
 public:
  virtual ~HttpGet() = default;
  // `url` is sent unchanged (Windows-1252 bytes), except that blanks, CR, LF and NUL are escaped.
  // Returns the body's bytes whatever the reply's status. Throws TransferError.
  virtual std::string Get(std::string_view url) = 0;
};

}  // namespace tonadex::net
