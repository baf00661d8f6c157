#pragma once

#include <cstddef>
#include <cstdint>

namespace tonadex::formats {

// `given`, or the phone's default `phones` when `given` is 0.
constexpr std::int16_t BaseOctave(std::int16_t given, std::int16_t phones) {
  return given == 0 ? phones : given;
}

// Maps an octave to one of a phone's three: 0 below the middle one (base + 1), 1 equal to it, 2
// above.
constexpr std::size_t OctaveBand(double octave, std::int16_t baseOctave) {
  const int middle = baseOctave + 1;
  return (octave >= middle ? 1u : 0u) + (octave > middle ? 1u : 0u);
}

}  // namespace tonadex::formats
