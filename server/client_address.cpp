#include "server/client_address.h"

#include <algorithm>
#include <cstdint>

#include "core/text.h"

namespace tonadex::server {

namespace asio = boost::asio;

asio::ip::address Plain(const asio::ip::address& address) {
  if (address.is_v6() && address.to_v6().is_v4_mapped()) {
    return asio::ip::make_address_v4(asio::ip::v4_mapped, address.to_v6());
  }
  return address;
}

std::string ClientOf(const asio::ip::address& address) {
  if (!address.is_v6()) {
    return address.to_string();
  }
  asio::ip::address_v6::bytes_type bytes = address.to_v6().to_bytes();
  std::fill(bytes.begin() + bytes.size() / 2, bytes.end(), std::uint8_t{0});
  return asio::ip::address_v6(bytes).to_string();
}

std::optional<asio::ip::address> LastForwarded(std::string_view field) {
  const std::size_t comma = field.rfind(',');
  const std::string_view last = core::Trim(field.substr(comma == field.npos ? 0 : comma + 1));
  boost::system::error_code error;
  const auto address = asio::ip::make_address(std::string(last), error);
  return error ? std::nullopt : std::optional(Plain(address));
}

}  // namespace tonadex::server
