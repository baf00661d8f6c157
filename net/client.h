#pragma once

#include <functional>
#include <string>
#include <string_view>

#include "net/http.h"

// Requests to the melody server.
namespace tonadex::net {

// Requests a path of the server (addresses.h) and returns the reply. Errors: core::RunTimeError
// (kTransfer) when there is no reply.
using Fetch = std::function<std::string(std::string_view path)>;

// A Fetch that requests `base` + path. `http` must outlive it.
Fetch FetchFrom(HttpGet& http, std::string base);

}  // namespace tonadex::net
