#include "platform/http/background_get.h"

#include <chrono>
#include <utility>

#include "platform/http/http_client.h"

namespace tonadex::platform {

HttpBackgroundGet::~HttpBackgroundGet() {
  Cancel();
}

void HttpBackgroundGet::Cancel() {
  cancelled_ = true;
  if (request_.valid()) {
    request_.wait();
  }
  cancelled_ = false;
}

void HttpBackgroundGet::Start(std::string url) {
  Cancel();
  request_ = std::async(std::launch::async, [this, url = std::move(url)]() -> Reply {
    HttpClient http({.pump =
                         [this] {
                           if (cancelled_) {
                             throw net::TransferError("cancelada");
                           }
                         },
                     .progress = {}});
    try {
      return {true, http.Get(url)};
    } catch (const net::TransferError&) {
      return {};
    }
  });
}

std::optional<net::BackgroundGet::Reply> HttpBackgroundGet::Take() {
  if (!request_.valid() ||
      request_.wait_for(std::chrono::seconds(0)) != std::future_status::ready) {
    return std::nullopt;
  }
  return request_.get();
}

}  // namespace tonadex::platform
