#pragma once

#include <string_view>

// What the iMelody format and the Motorola phones that take its notes share.
namespace tonadex::formats {

// The duration digit, "1" is 0 to "32" is 5; "" for an unknown duration.
std::string_view IMelodyDigit(std::string_view duration);

// The rest of a pause's duration; "" for an unknown one. The rests do not keep the length of the
// pause: deliberate, the phones have always been given these.
std::string_view IMelodyRest(std::string_view duration);

}  // namespace tonadex::formats
