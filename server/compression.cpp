#include "server/compression.h"

#include <algorithm>

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

}  // namespace

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

Reply Compressed(Reply reply, std::string_view acceptEncoding) {
  if (!IsText(reply.contentType)) {
    return reply;
  }
  reply.fields += kVaryField;
  if (reply.body.size() != 1 || reply.body.front()->size() < kMinCompressedBytes ||
      reply.body.front()->size() > kMaxCompressedBytes || !AcceptsGzip(acceptEncoding)) {
    return reply;
  }
  if (std::string packed = Gzip(*reply.body.front()); !packed.empty()) {
    reply.body = {std::make_shared<const std::string>(std::move(packed))};
    reply.fields += kGzipField;
  }
  return reply;
}

}  // namespace tonadex::server
