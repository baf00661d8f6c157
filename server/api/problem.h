#pragma once

#include <string_view>

#include "server/handler.h"

// Replies to requests that cannot be served.
namespace tonadex::server {

// Prefix of every path of the interface for other programs.
inline constexpr std::string_view kApiPath = "/api/v1";

inline constexpr std::string_view kProblemType = "application/problem+json";

// A reply of type application/problem+json: {"type":…,"title":…,"status":…,"detail":…}. `detail`
// (Windows-1252) says what to do; "" gives the usual advice for the status.
Reply ProblemReply(int status, std::string_view detail = {});

// The reply when no handler ran or a handler failed: a problem for targets of the interface, else
// plain text.
Reply RefusalReply(int status, std::string_view target);

// Thrown by the interface's handlers in place of a reply.
struct ApiProblem {
  int status;
  std::string detail;  // Windows-1252
};

}  // namespace tonadex::server
