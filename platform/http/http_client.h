#pragma once

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>

#include "net/http.h"

namespace tonadex::platform {

struct HttpLimits {
  std::chrono::milliseconds connectTimeout{10'000};  // including the name look-up
  std::chrono::milliseconds idleTimeout{30'000};     // longest time without a byte sent or received
  // From the start of Get to the reply's last byte: bounds a server that sends a byte at a time.
  std::chrono::milliseconds totalTimeout{60'000};
  std::size_t maxBodyBytes = std::size_t{64} << 20;
  std::size_t maxLineBytes = std::size_t{16} << 10;  // of a chunk header with extensions, and
                                                     // of all trailers together
  std::chrono::milliseconds pumpInterval{20};
};

// Called during a transfer, in the thread that called Get. Both may be empty.
struct HttpCallbacks {
  // Called about every pumpInterval, even while connecting, so that a window can paint. An
  // exception ends the transfer and propagates out of Get.
  std::function<void()> pump;
  // Bytes of the body received so far, and the total if the server states it.
  std::function<void(std::size_t received, std::optional<std::uint64_t> total)> progress;
};

// HTTP/1.1, one connection per request; redirects are not followed. A body ends after its length,
// with its last chunk or when the connection closes; interim replies (1xx) are skipped. https
// addresses are encrypted (tls.h); a server must prove its name with a certificate that the system
// trusts.
class HttpClient : public net::HttpGet {
 public:
  explicit HttpClient(HttpCallbacks callbacks = {}, HttpLimits limits = {});

  // `url` begins with "http://" or "https://". Throws TransferError, also for truncated or
  // oversized replies.
  std::string Get(std::string_view url) override;

  int LastStatus() const override { return lastStatus_; }

 private:
  HttpCallbacks callbacks_;
  HttpLimits limits_;
  int lastStatus_ = 0;
};

}  // namespace tonadex::platform
