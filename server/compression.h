#pragma once

#include <string_view>

#include "server/handler.h"

// gzip for the page and the interface for other programs.
namespace tonadex::server {

// Whether the value of Accept-Encoding names gzip with a weight above 0.
bool AcceptsGzip(std::string_view acceptEncoding);

// Compresses text replies if the client accepts gzip and the size makes it worthwhile (limits.h).
// Text replies get "Vary: Accept-Encoding" in any case. Other types and replies without a body are
// unchanged.
Reply Compressed(Reply reply, std::string_view acceptEncoding);

// The header field of a compressed body, and the one of every reply that depends on
// Accept-Encoding.
inline constexpr std::string_view kGzipField = "Content-Encoding: gzip\r\n";
inline constexpr std::string_view kVaryField = "Vary: Accept-Encoding\r\n";

}  // namespace tonadex::server
