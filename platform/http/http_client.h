#pragma once

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>

#include "platform/http.h"

namespace tonadex::platform {

struct HttpLimits {
  std::chrono::milliseconds connectTimeout{10'000};  // finding the host's address included
  std::chrono::milliseconds idleTimeout{30'000};     // without a byte, sending or receiving
  // From the start of Get to the reply's last byte: a server that drips must not hold a window.
  std::chrono::milliseconds totalTimeout{60'000};
  std::size_t maxBodyBytes = std::size_t{64} << 20;
  std::size_t maxLineBytes = std::size_t{16} << 10;  // of a chunk's line with its extensions, and
                                                     // of all trailers together
  std::chrono::milliseconds pumpInterval{20};
};

// What a transfer tells its caller, always in the thread that called Get. Both may be empty.
struct HttpCallbacks {
  // Called about every pumpInterval at every stage, so that a window can paint. What it throws ends
  // the transfer and leaves Get as it is.
  std::function<void()> pump;
  // Bytes of the body so far, and how many there will be where the server says so.
  std::function<void(std::size_t received, std::optional<std::uint64_t> total)> progress;
};

// HTTP/1.1 over plain TCP, one connection for each request, redirects not followed. A reply body
// may come by length, in chunks or up to the end of the connection; interim replies (1xx) before it
// are skipped.
class HttpClient : public HttpGet {
 public:
  explicit HttpClient(HttpCallbacks callbacks = {}, HttpLimits limits = {});

  // `url` begins with "http://". Cut-off, malformed and oversized replies are a TransferError.
  std::string Get(std::string_view url) override;

  // Status of the last reply (200, 404 …), 0 when there was none.
  int LastStatus() const { return lastStatus_; }

 private:
  HttpCallbacks callbacks_;
  HttpLimits limits_;
  int lastStatus_ = 0;
};

}  // namespace tonadex::platform
