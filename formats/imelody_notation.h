#pragma once

#include <string_view>

// Notation shared by the iMelody format and the Motorola phones that accept its notes.
namespace tonadex::formats {

// The duration digit, "1" is 0 to "32" is 5; "" for an unknown duration.
std::string_view IMelodyDigit(std::string_view duration);

// The rest of a pause's duration; "" for an unknown one. The rests do not add up to the
// length of the pause: kept, because users' phones depend on it.
std::string_view IMelodyRest(std::string_view duration);

}  // namespace tonadex::formats
