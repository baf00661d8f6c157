#pragma once

#include <algorithm>
#include <array>
#include <string_view>

// Notation shared by the iMelody format and the Motorola phones that accept its notes.
namespace tonadex::formats {

struct IMelodyDuration {
  std::string_view text, digit, rest;
};

// The rests do not add up to the length of the pause: kept, because users' phones depend on it.
inline constexpr std::array kIMelodyDurations = std::to_array<IMelodyDuration>({
    {"1", "0", "r2"},
    {"2", "1", "r3r3"},
    {"4", "2", "r4r3"},
    {"8", "3", "r4r4"},
    {"16", "4", "r4"},
    {"32", "5", "r4"},
});

// The row of an RTTTL duration; one of empty texts for an unknown duration.
constexpr IMelodyDuration FindIMelodyDuration(std::string_view duration) {
  const auto found = std::ranges::find(kIMelodyDurations, duration, &IMelodyDuration::text);
  return found == kIMelodyDurations.end() ? IMelodyDuration{} : *found;
}

}  // namespace tonadex::formats
