#include "formats/imelody_notation.h"

#include <algorithm>
#include <array>

namespace tonadex::formats {
namespace {

struct Duration {
  std::string_view text, digit, rest;
};

constexpr std::array kDurations = std::to_array<Duration>({
    {"1", "0", "r2"},
    {"2", "1", "r3r3"},
    {"4", "2", "r4r3"},
    {"8", "3", "r4r4"},
    {"16", "4", "r4"},
    {"32", "5", "r4"},
});

std::string_view Find(std::string_view duration, std::string_view Duration::*column) {
  const auto found = std::ranges::find(kDurations, duration, &Duration::text);
  return found == kDurations.end() ? std::string_view() : (*found).*column;
}

}  // namespace

std::string_view IMelodyDigit(std::string_view duration) {
  return Find(duration, &Duration::digit);
}

std::string_view IMelodyRest(std::string_view duration) {
  return Find(duration, &Duration::rest);
}

}  // namespace tonadex::formats
