#pragma once

#include <cstddef>
#include <string>
#include <string_view>

// The bytes before a request's body: request line and fields.
namespace tonadex::server {

// The fields of a request that the socket loop uses.
struct Parsed {
  int refusal = 0;  // status of an immediate refusal, 0 when the handler is called
  bool head = false;
  bool post = false;
  bool keepAlive = false;
  bool foreign = false;       // caused by another host's page, or addressed to another host name
  bool asksForBody = false;   // sent "Expect: 100-continue"
  std::size_t bodyBytes = 0;  // Content-Length
  std::string target, forwardedFor, contentType, ifNoneMatch, acceptEncoding, body;
};

// A request that gets this status.
Parsed Refused(int status, std::string target = {});

// The length of the empty lines at the start, which are skipped: some clients send one too many
// after the last request.
std::size_t EmptyLineBytes(std::string_view buffer);

// 414 or 431 when the request line or all fields together exceed their limit, else 0. The head is
// the first `headBytes` bytes of the buffer.
int LimitRefusal(std::string_view buffer, std::size_t headBytes);

// `head`: request line and fields, the blank line included. The body is still to be read.
Parsed ParseHead(std::string_view head);

}  // namespace tonadex::server
