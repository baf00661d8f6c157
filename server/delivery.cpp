#include "server/delivery.h"

#include <algorithm>
#include <cstdint>

#include "core/text.h"
#include "server/limits.h"
#ifdef TONADEX_GZIP
#include <zlib.h>
#endif

namespace tonadex::server {
namespace {

bool IsText(std::string_view type) {
  return type.starts_with("text/") || core::Contains(type, "json") || core::Contains(type, "svg");
}

#ifdef TONADEX_GZIP
constexpr int kWindowBits = 15 + 16;  // 16 asks for gzip's header instead of zlib's
constexpr int kMemoryLevel = 8;       // 256 KiB, zlib's usual

// "" when zlib runs out of memory.
std::string Gzip(std::string_view text) {
  z_stream stream{};
  if (deflateInit2(&stream, Z_DEFAULT_COMPRESSION, Z_DEFLATED, kWindowBits, kMemoryLevel,
                   Z_DEFAULT_STRATEGY) != Z_OK) {
    return {};
  }
  std::string packed(deflateBound(&stream, static_cast<uLong>(text.size())), '\0');
  stream.next_in = reinterpret_cast<z_const Bytef*>(const_cast<char*>(text.data()));
  stream.avail_in = static_cast<uInt>(text.size());
  stream.next_out = reinterpret_cast<Bytef*>(packed.data());
  stream.avail_out = static_cast<uInt>(packed.size());
  const bool whole = deflate(&stream, Z_FINISH) == Z_STREAM_END;
  packed.resize(whole ? stream.total_out : 0);
  deflateEnd(&stream);
  return packed;
}
#else
// On Windows only embedded servers exist, and their replies never leave the machine.
std::string Gzip(std::string_view) {
  return {};
}
#endif

// Whether the value of Accept-Encoding names gzip with a weight above 0.
bool AcceptsGzip(std::string_view acceptEncoding) {
  const std::string codings = core::ToLower(acceptEncoding);
  for (std::string_view rest = codings; !rest.empty();) {
    const std::string_view coding = rest.substr(0, rest.find(','));
    rest.remove_prefix(std::min(coding.size() + 1, rest.size()));
    const std::size_t weight = std::min(coding.find(';'), coding.size());
    if (core::Trim(coding.substr(0, weight)) == "gzip") {
      return weight == coding.size() ||
             coding.find_first_of("123456789", weight) != coding.npos;  // "q=0.000" refuses it
    }
  }
  return false;
}

// FNV-1a with 64 bits is enough: a forged collision would only make a client see its own cached
// reply.
std::string ETagOf(const std::vector<SharedText>& texts) {
  std::uint64_t hash = 0xCBF29CE484222325;
  for (const SharedText& text : texts) {
    for (const char c : *text) {
      hash = (hash ^ core::Code(c)) * 0x100000001B3;
    }
  }
  return "W/\"" + std::to_string(hash) + "\"";
}

void AddETag(Reply& reply, std::string_view ifNoneMatch) {
  const std::string tag = reply.fixed == nullptr ? ETagOf(reply.body) : reply.fixed->etag;
  reply.fields += "ETag: " + tag + "\r\n";
  reply.maxAgeSeconds = reply.maxAgeSeconds == 0 ? kAskAgain : reply.maxAgeSeconds;
  if (core::Contains(ifNoneMatch, tag)) {
    reply.status = 304;
    reply.body.clear();
  }
}

SharedText Packed(const Reply& reply) {
  if (reply.fixed != nullptr) {
    return reply.fixed->packed;
  }
  const std::string& text = *reply.body.front();
  std::string packed =
      text.size() < kMinCompressedBytes || text.size() > kMaxCompressedBytes ? "" : Gzip(text);
  return packed.empty() ? nullptr : std::make_shared<const std::string>(std::move(packed));
}

}  // namespace

FixedBody MakeFixedBody(std::string text, std::string packed) {
  FixedBody body;
  packed = packed.empty() ? Gzip(text) : std::move(packed);
  body.plain = std::make_shared<const std::string>(std::move(text));
  body.packed = packed.empty() ? nullptr : std::make_shared<const std::string>(std::move(packed));
  body.etag = ETagOf({body.plain});
  return body;
}

Reply FixedReply(const FixedBody& body, std::string_view contentType) {
  return {.contentType = contentType, .body = {body.plain}, .fixed = &body};
}

Reply Delivered(Reply reply, const Request& request) {
  if (!request.post && reply.status == 200) {
    AddETag(reply, request.ifNoneMatch);
  }
  if (!IsText(reply.contentType)) {
    return reply;
  }
  reply.fields += "Vary: Accept-Encoding\r\n";
  if (reply.body.size() == 1 && AcceptsGzip(request.acceptEncoding)) {
    if (SharedText packed = Packed(reply)) {
      reply.body = {std::move(packed)};
      reply.fields += "Content-Encoding: gzip\r\n";
    }
  }
  return reply;
}

}  // namespace tonadex::server
