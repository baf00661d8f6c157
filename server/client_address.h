#pragma once

#include <boost/asio/ip/address.hpp>
#include <optional>
#include <string>
#include <string_view>

// Which client sent a request.
namespace tonadex::server {

// ::ffff:1.2.3.4 is the IPv4 address 1.2.3.4.
boost::asio::ip::address Plain(const boost::asio::ip::address& address);

// The client as rate limits count it: an IPv6 network (/64) is one client.
std::string ClientOf(const boost::asio::ip::address& address);

// The last address of X-Forwarded-For, which the proxy added; those before it are unverified. Empty
// when it is not an address.
std::optional<boost::asio::ip::address> LastForwarded(std::string_view field);

}  // namespace tonadex::server
