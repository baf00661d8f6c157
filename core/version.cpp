#include "core/version.h"

#include <algorithm>
#include <charconv>

namespace tonadex::core {
namespace {

// Removes the first number from the text and returns it; 0 when there is none. One beyond 32 bits
// counts as the greatest.
unsigned TakeNumber(std::string_view& text) {
  text.remove_prefix(std::min(text.find_first_of("0123456789"), text.size()));
  unsigned number = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
  text.remove_prefix(static_cast<std::size_t>(end - text.data()));
  return error == std::errc::result_out_of_range ? ~0u : number;
}

}  // namespace

bool IsOlderVersion(std::string_view version, std::string_view than) {
  while (!version.empty() || !than.empty()) {
    const unsigned left = TakeNumber(version), right = TakeNumber(than);
    if (left != right) {
      return left < right;
    }
  }
  return false;
}

}  // namespace tonadex::core
