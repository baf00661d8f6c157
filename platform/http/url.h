#pragma once

#include <string>
#include <string_view>

namespace tonadex::platform {

struct Url {
  std::string authority;  // as the Host field wants it: "example:8080", "[::1]:80"
  std::string host;
  std::string port;    // "80" when the address names none
  std::string target;  // begins with "/", ready for a request line
};

// The parts of "http://host:port/target". What HTTP forbids in a request line is escaped, the rest
// of the target stays as typed. Errors: TransferError for an address that cannot be used.
Url ParseUrl(std::string_view text);

}  // namespace tonadex::platform
