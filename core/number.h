#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

// Numbers in text, and checked conversions.
namespace tonadex::core {

// Parses a number: surrounding blanks, optional sign, decimal digits, optional fraction after ".",
// optional exponent after "e" or "E"; no locale. "" counts as 0.
// Errors: type mismatch for any other text, overflow beyond the range of a double.
double ToNumber(std::string_view text);

// The nearest whole number, halves to the even neighbour: 0.5 gives 0, 1.5 and 2.5 give 2.
double RoundHalfEven(double value);

// Rounded half to even. Overflow when the result lies outside -32768 to 32767.
std::int16_t ToInt16(double value);
// Rounded half to even. Overflow when the result does not fit 32 bits.
std::int32_t ToInt32(double value);

// ToNumber(text), or nullopt when that fails.
std::optional<double> FindNumber(std::string_view text);
// ToInt32(ToNumber(text)), or nullopt when that fails.
std::optional<std::int32_t> FindInt32(std::string_view text);

// dividend / divisor. Errors: division by zero.
double Divide(double dividend, double divisor);

}  // namespace tonadex::core
