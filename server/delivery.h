#pragma once

#include <string>
#include <string_view>

#include "server/handler.h"

// ETags and gzip for the page and the interface for other programs.
namespace tonadex::server {

// A body that never changes: its ETag and its gzip form are made only once.
struct FixedBody {
  SharedText plain, packed;  // `packed` is null without a compressor
  std::string etag;
};
// `packed`: the text in gzip, if it is known.
FixedBody MakeFixedBody(std::string text, std::string packed = {});

// A reply with this body, which must outlive the reply.
Reply FixedReply(const FixedBody& body, std::string_view contentType);

// Completes the reply for its client. A successful reply to a GET gets an ETag, a hash of its body;
// if "If-None-Match" has the same value, it becomes a 304 without a body. Texts get "Vary:
// Accept-Encoding" and are compressed if the client accepts gzip and the size makes it worthwhile
// (limits.h).
Reply Delivered(Reply reply, const Request& request);

}  // namespace tonadex::server
