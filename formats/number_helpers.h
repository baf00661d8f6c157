#pragma once

#include <cstdint>
#include <string>
#include <string_view>

// Whole numbers as binary and hexadecimal digits, shared by the writers of binary files.
namespace tonadex::formats {

// Halves `value` by integer division, `count` times; a negative value goes towards 0.
std::int32_t ShiftRight(std::int32_t value, int count);

// Binary digits, most significant first, with leading zeros to at least eight: 5 is "00000101".
std::string ToBinary8(std::uint32_t value);

// "0" and "1" digits, most significant first, as upper-case hexadecimal digits without leading
// zeros; zeros give "0".
std::string BitsToHex(std::string_view bits);

// The low 16 bits of a number; negative ones as two's complement.
std::uint16_t LowWord(std::int32_t value);

}  // namespace tonadex::formats
