#pragma once

#include <functional>
#include <string>
#include <string_view>

#include "net/http.h"

// Requests to the melody server.
namespace tonadex::net {

// Gives the reply to a path of the server (addresses.h). Errors: core::RunTimeError (kTransfer)
// when no reply came.
using Fetch = std::function<std::string(std::string_view path)>;

// A Fetch that goes to `base` + path as typed. `http` outlives it.
Fetch FetchFrom(HttpGet& http, std::string base);

}  // namespace tonadex::net
