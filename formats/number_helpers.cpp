#include "formats/number_helpers.h"

#include <algorithm>
#include <bit>
#include <charconv>

#include "core/text.h"

namespace tonadex::formats {

std::int32_t ShiftRight(std::int32_t value, int count) {
  for (int i = 0; i < count && value != 0; ++i) {
    value /= 2;
  }
  return value;
}

std::string ToBinary8(std::uint32_t value) {
  const std::size_t digits =
      std::max(std::size_t{8}, static_cast<std::size_t>(std::bit_width(value)));
  std::string text(digits, '0');
  for (std::size_t at = digits; at-- > 0; value >>= 1) {
    text[at] = (value & 1u) != 0 ? '1' : '0';
  }
  return text;
}

std::string BitsToHex(std::string_view bits) {
  constexpr std::string_view kDigits = "0123456789ABCDEF";
  std::string hex((bits.size() + 3) / 4, '0');
  for (std::size_t at = hex.size(); at-- > 0;) {
    const std::string_view nibble = core::Right(bits, 4);
    bits.remove_suffix(nibble.size());
    std::size_t value = 0;
    for (const char bit : nibble) {
      value = value * 2 + (bit == '1' ? 1 : 0);
    }
    hex[at] = kDigits[value];
  }
  const std::size_t first = hex.find_first_not_of('0');
  return first == std::string::npos ? "0" : hex.substr(first);
}

std::uint16_t LowWord(std::int32_t value) {
  const std::string bits = ToBinary8(static_cast<std::uint32_t>(value));
  const std::string hex = BitsToHex(core::Right(bits, 16));
  std::uint16_t word = 0;
  std::from_chars(hex.data(), hex.data() + hex.size(), word, 16);
  return word;
}

}  // namespace tonadex::formats
