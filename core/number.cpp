#include "core/number.h"

#include <charconv>
#include <cmath>
#include <limits>
#include <string>
#include <system_error>

#include "core/runtime_error.h"
#include "core/text.h"
#include "core/windows1252.h"

namespace tonadex::core {
namespace {

constexpr std::size_t kWholeDigits = 9;  // nine digits always fit 32 bits

// Maximum characters that an error message quotes of a text that is not a number.
constexpr std::ptrdiff_t kMaxQuoted = 40;

// Drops the leading digits of `text`; false when it starts with none.
bool SkipDigits(std::string_view& text) {
  const std::size_t size = text.size();
  while (!text.empty() && IsDigit(text.front())) {
    text.remove_prefix(1);
  }
  return text.size() < size;
}

bool SkipSign(std::string_view& text) {
  if (text.empty() || (text.front() != '+' && text.front() != '-')) {
    return false;
  }
  text.remove_prefix(1);
  return true;
}

bool SkipLetter(std::string_view& text, char lower) {
  if (text.empty() || ToLower(text.front()) != lower) {
    return false;
  }
  text.remove_prefix(1);
  return true;
}

bool IsNumber(std::string_view text) {
  SkipSign(text);
  if (!SkipDigits(text)) {
    return false;
  }
  if (SkipLetter(text, '.') && !SkipDigits(text)) {
    return false;
  }
  if (SkipLetter(text, 'e')) {
    SkipSign(text);
    if (!SkipDigits(text)) {
      return false;
    }
  }
  return text.empty();
}

// The fast path: nearly all numbers are a few digits. -1 for any other text.
std::int32_t ShortWhole(std::string_view text) {
  if (text.empty() || text.size() > kWholeDigits) {
    return -1;
  }
  std::int32_t value = 0;
  for (const char c : text) {
    if (!IsDigit(c)) {
      return -1;
    }
    value = value * 10 + (c - '0');
  }
  return value;
}

[[noreturn]] void ThrowOverflow() {
  throw RunTimeError(ErrorNumber::kOverflow,
                     std::string(u8"un número es demasiado grande o demasiado pequeño"_w));
}

// For a number outside the range of a double: true when it underflows (and reads as 0), false when
// it overflows.
bool IsTiny(std::string_view number) {
  const std::string_view digits = number.substr(0, number.find_first_of(".eE"));
  return Contains(number, "e-") || Contains(number, "E-") ||
         digits.find_first_not_of('0') == std::string_view::npos;
}

enum class Reading { kNumber, kTooLarge, kNoNumber };

Reading Read(std::string_view text, double& value) {
  value = ShortWhole(text);
  if (value >= 0) {
    return Reading::kNumber;
  }
  value = 0;
  std::string_view number = Trim(text);
  if (text.empty() || !IsNumber(number)) {
    return text.empty() ? Reading::kNumber : Reading::kNoNumber;
  }
  if (number.front() == '+') {
    number.remove_prefix(1);  // from_chars accepts "-" but not "+"
  }
  const auto result = std::from_chars(number.data(), number.data() + number.size(), value);
  const bool outside = result.ec == std::errc::result_out_of_range;
  return outside && !IsTiny(number) ? Reading::kTooLarge : Reading::kNumber;
}

template <typename Whole>
bool Fits(double rounded) {
  return rounded >= std::numeric_limits<Whole>::min() &&
         rounded <= std::numeric_limits<Whole>::max();
}

template <typename Whole>
Whole Checked(double value) {
  const double rounded = RoundHalfEven(value);
  if (!Fits<Whole>(rounded)) {
    ThrowOverflow();
  }
  return static_cast<Whole>(rounded);
}

}  // namespace

double ToNumber(std::string_view text) {
  double value = 0;
  switch (Read(text, value)) {
    case Reading::kNumber:
      break;
    case Reading::kTooLarge:
      ThrowOverflow();
    case Reading::kNoNumber:
      throw RunTimeError(ErrorNumber::kTypeMismatch, std::string(u8"«"_w) +
                                                         std::string(Left(text, kMaxQuoted)) +
                                                         std::string(u8"» no es un número"_w));
  }
  return value;
}

double RoundHalfEven(double value) {
  const double below = std::floor(value);
  const double rest = value - below;
  if (rest != 0.5) {
    return rest < 0.5 ? below : below + 1;
  }
  return std::fmod(below, 2) == 0 ? below : below + 1;
}

std::int16_t ToInt16(double value) {
  return Checked<std::int16_t>(value);
}
std::int32_t ToInt32(double value) {
  return Checked<std::int32_t>(value);
}

std::optional<double> FindNumber(std::string_view text) {
  double value = 0;
  return Read(text, value) == Reading::kNumber ? std::optional(value) : std::nullopt;
}

std::optional<std::int32_t> FindInt32(std::string_view text) {
  const std::optional<double> value = FindNumber(text);
  const double rounded = RoundHalfEven(value.value_or(0));
  return value && Fits<std::int32_t>(rounded) ? std::optional(static_cast<std::int32_t>(rounded))
                                              : std::nullopt;
}

double Divide(double dividend, double divisor) {
  if (divisor == 0) {
    throw RunTimeError(ErrorNumber::kDivisionByZero, std::string(u8"división por cero"_w));
  }
  return dividend / divisor;
}

}  // namespace tonadex::core
