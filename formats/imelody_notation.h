#pragma once

#include <array>
#include <string_view>

#include "core/rtttl.h"

// Notation shared by the iMelody format and the Motorola phones that accept its notes.
namespace tonadex::formats {

struct IMelodyDuration {
  std::string_view digit, rest;
};

// Indexed by NoteCodes::length. The rests do not add up to the length of the pause: kept, because
// users' phones depend on it.
inline constexpr std::array kIMelodyDurations = std::to_array<IMelodyDuration>({
    {"0", "r2"},
    {"1", "r3r3"},
    {"2", "r4r3"},
    {"3", "r4r4"},
    {"4", "r4"},
    {"5", "r4"},
});

// Empty strings for an unknown duration.
constexpr IMelodyDuration IMelodyDurationOf(const core::NoteCodes& note) {
  return note.length < kIMelodyDurations.size() ? kIMelodyDurations[note.length]
                                                : IMelodyDuration{};
}

}  // namespace tonadex::formats
