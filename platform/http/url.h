#pragma once

#include <string>
#include <string_view>

namespace tonadex::platform {

struct Url {
  bool encrypted = false;  // https
  std::string authority;   // value of the Host field: "example:8080", "[::1]:80"
  std::string host;
  std::string port;    // by default "80", "443" for https
  std::string target;  // begins with "/", ready for a request line
};

// Splits "http://host:port/target" or "https://…". Characters that HTTP forbids in a request line
// are escaped; the rest of the target is unchanged. Throws TransferError for an invalid URL.
Url ParseUrl(std::string_view text);

}  // namespace tonadex::platform
