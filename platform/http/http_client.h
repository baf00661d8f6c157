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
  // A reply that drips would keep a window waiting for hours: from this time on it must have come
  // at this pace, on the whole.
  std::chrono::milliseconds dripTimeout{60'000};
  std::size_t leastBytesPerSecond = 100;
  std::size_t maxBodyBytes = std::size_t{64} << 20;
  std::chrono::milliseconds pumpInterval{20};
};

// What a transfer tells its caller, always in the thread that called Get. Both may be empty.
struct HttpCallbacks {
  // Called about every pumpInterval, so that a window can paint. What it throws leaves Get.
  std::function<void()> pump;
  // Bytes of the body so far, and how many there will be where the server says so.
  std::function<void(std::size_t received, std::optional<std::uint64_t> total)> progress;
};

// HTTP/1.1 over plain TCP, one connection for each request, redirects not followed. A reply body
// may come by length, in chunks or up to the end of the connection.
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
