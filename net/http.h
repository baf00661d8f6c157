#pragma once

#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>

namespace tonadex::net {

// A failed transfer: no connection, time-out, broken or oversized reply.
class TransferError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;  // what(): Spanish, UTF-8
};

// A blocking HTTP GET. Windows are painted meanwhile, but no event handler, timer or second Get
// runs.
class HttpGet {
 public:
  virtual ~HttpGet() = default;
  // `url` is sent unchanged (Windows-1252 bytes), except that blanks, CR, LF and NUL are escaped.
  // Returns the body's bytes for any status. Throws TransferError.
  virtual std::string Get(std::string_view url) = 0;
  // Status of the last reply (200, 404 …), 0 when there was none.
  virtual int LastStatus() const = 0;
};

// One GET request at a time that runs while the user goes on.
class BackgroundGet {
 public:
  virtual ~BackgroundGet() = default;
  // Cancels the request that still runs. `url` as in HttpGet.
  virtual void Start(std::string url) = 0;
  // The reply's body once, when the request has ended ("" without a reply); nullopt before.
  struct Reply {
    bool came = false;  // with any status
    std::string body;
  };
  virtual std::optional<Reply> Take() = 0;
};

}  // namespace tonadex::net
