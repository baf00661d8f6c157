#pragma once

#include <string_view>

#include "server/handler.h"

// Replies to requests that cannot be served.
namespace tonadex::server {

// Every path of the interface for other programs begins so.
inline constexpr std::string_view kApiPath = "/api/v1";

inline constexpr std::string_view kProblemType = "application/problem+json";

// {"type":…,"title":…,"status":…,"detail":…}. `detail` (Windows-1252) says what to do; "" gives
// the usual advice for the status.
Reply ProblemReply(int status, std::string_view detail = {});

// What a request gets that reaches no handler, or one that failed: a problem for a target of the
// interface, else a text.
Reply RefusalReply(int status, std::string_view target);

// Thrown by the interface's handlers in place of a reply.
struct ApiProblem {
  int status;
  std::string detail;  // Windows-1252
};

}  // namespace tonadex::server
