#pragma once

#include <string_view>

#include "server/handler.h"

// gzip for the page and the interface for other programs.
namespace tonadex::server {

// Whether a header field Accept-Encoding names gzip, other than with "q=0".
bool AcceptsGzip(std::string_view acceptEncoding);

// Compresses texts where the client accepts it and the size makes it worthwhile (see limits.h);
// texts get "Vary: Accept-Encoding" in any case. Other types and replies without a body stay.
Reply Compressed(Reply reply, std::string_view acceptEncoding);

// Header fields for a compressed body, and for every reply that may be compressed for others.
inline constexpr std::string_view kGzipField = "Content-Encoding: gzip\r\n";
inline constexpr std::string_view kVaryField = "Vary: Accept-Encoding\r\n";

}  // namespace tonadex::server
