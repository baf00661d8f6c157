#include "server/etag.h"

#include <cstdint>

#include "core/text.h"

namespace tonadex::server {
namespace {

// FNV-1a with 64 bits is enough: a forged collision would only make a client see its own cached
// reply.
std::uint64_t Hash(const std::vector<SharedText>& texts) {
  std::uint64_t hash = 0xCBF29CE484222325;
  for (const SharedText& text : texts) {
    for (const char c : *text) {
      hash = (hash ^ core::Code(c)) * 0x100000001B3;
    }
  }
  return hash;
}

}  // namespace

Reply WithETag(Reply reply, std::string_view ifNoneMatch) {
  if (reply.status != 200) {
    return reply;
  }
  const std::string tag = "W/\"" + std::to_string(Hash(reply.body)) + "\"";
  reply.fields += "ETag: " + tag + "\r\n";
  reply.maxAgeSeconds = reply.maxAgeSeconds == 0 ? kAskAgain : reply.maxAgeSeconds;
  if (core::Contains(ifNoneMatch, tag)) {
    reply.status = 304;
    reply.body.clear();
  }
  return reply;
}

}  // namespace tonadex::server
