#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "server/rate_limit.h"
#include "server/store.h"

namespace tonadex::server {

struct Request {
  std::string target;        // path and query as received, including bytes above 127
  std::string client;        // the address that rate limits count
  Clock::time_point now;     // for rate limits
  std::uint64_t random = 0;  // seed of random choices
  // Returns true once the client has gone; may be empty.
  std::function<bool()> abandoned = {};
  bool post = false;  // else GET or HEAD; the socket loop removes the body of replies to HEAD
  std::string body = {};
  std::string contentType = {}, ifNoneMatch = {}, acceptEncoding = {};  // header fields
};

inline constexpr int kAskAgain = -1;  // for maxAgeSeconds: caches must revalidate
inline constexpr std::string_view kTextType = "text/plain; charset=windows-1252";
inline constexpr std::string_view kHtmlType = "text/html; charset=utf-8";

struct FixedBody;

struct Reply {
  int status = 200;
  std::string_view contentType = kTextType;
  std::vector<SharedText> body = {};  // sent one after the other
  int maxAgeSeconds = 0;              // how long a cache may keep it
  std::string fields = {};            // further header fields, each "Name: value\r\n"
  const FixedBody* fixed = nullptr;   // the body, if it never changes (delivery.h)
};

Reply TextReply(int status, std::string_view text);

struct StatusWords {
  int status;
  std::string_view words;  // Windows-1252
};
// The reply to an upload; kStored has status 200.
StatusWords UploadWords(const UploadAnswer& answer);

// The text of a 503 while the store cannot be reached, Windows-1252.
extern const std::string_view kStoreAwayWords;

// Answers a request of the clients' protocol, the JSON interface or the web page. Changes only the
// store and `conversions`, the rate limit of conversions, which may be null. Throws std::bad_alloc
// at most.
Reply Handle(const Request& request, Store& store, RateLimit* conversions = nullptr);

// The path under which a target is counted: one that the server answers, else "otras".
std::string RouteOf(std::string_view target);

// Decodes %XX; a "%" without two hexadecimal digits is kept, "+" is a plus.
std::string UndoEscapes(std::string_view text);
// Appends the byte as %XX.
void AppendEscaped(std::string& text, char byte);
// Escapes every byte except letters, digits and "-._~" as %XX.
std::string PercentEncoded(std::string_view bytes);

}  // namespace tonadex::server
