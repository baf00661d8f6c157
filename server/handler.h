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
  std::string target;        // path and query as they came, bytes above 127 included
  std::string client;        // whom the limit of uploads counts
  Clock::time_point now;     // for that limit
  std::uint64_t random = 0;  // what a random choice is made with
  // Whether nobody waits for the reply any more; may be empty.
  std::function<bool()> abandoned = {};
  bool post = false;  // else GET or HEAD, whose body is left out later
  std::string body = {};
  std::string contentType = {}, ifNoneMatch = {}, acceptEncoding = {};  // header fields
};

inline constexpr int kAskAgain = -1;  // for maxAgeSeconds: a cache may keep it, but must ask
inline constexpr std::string_view kTextType = "text/plain; charset=windows-1252";
inline constexpr std::string_view kHtmlType = "text/html; charset=utf-8";

struct Reply {
  int status = 200;
  std::string_view contentType = kTextType;
  std::vector<SharedText> body = {};  // sent one after the other
  int maxAgeSeconds = 0;              // how long a cache may keep it
  std::string fields = {};            // further header fields, each "Name: value\r\n"
};

Reply TextReply(int status, std::string_view text);

struct StatusWords {
  int status;
  std::string_view words;  // Windows-1252
};
// What became of an upload; kStored is 200.
StatusWords UploadWords(const UploadAnswer& answer);

// What a request gets with a 503 when the store is away, Windows-1252.
extern const std::string_view kStoreAwayWords;

// The server: a reply for each request. The only things it changes are the store and the limit of
// conversions, which may be absent. Never throws (memory aside).
Reply Handle(const Request& request, Store& store, RateLimit* conversions = nullptr);

// The path that answers this target, for counting: one of the few that the server knows, else
// "otras".
std::string RouteOf(std::string_view target);

// %XX undone; a "%" without two hexadecimal digits stays, "+" is a plus.
std::string UndoEscapes(std::string_view text);
// Appends the byte as %XX.
void AppendEscaped(std::string& text, char byte);
// Everything but letters, digits and "-._~" as %XX.
std::string PercentEncoded(std::string_view bytes);

}  // namespace tonadex::server
