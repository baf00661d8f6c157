#pragma once

#include <atomic>
#include <future>
#include <optional>
#include <string>

#include "net/http.h"

namespace tonadex::platform {

// A request by HttpClient in its own thread; cancellation takes effect within about
// HttpLimits::pumpInterval.
class HttpBackgroundGet : public net::BackgroundGet {
 public:
  HttpBackgroundGet() = default;
  HttpBackgroundGet(const HttpBackgroundGet&) = delete;
  HttpBackgroundGet& operator=(const HttpBackgroundGet&) = delete;
  ~HttpBackgroundGet() override;

  void Start(std::string url) override;
  std::optional<Reply> Take() override;

 private:
  void Cancel();

  std::atomic<bool> cancelled_ = false;
  std::future<Reply> request_;
};

}  // namespace tonadex::platform
