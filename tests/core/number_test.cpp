#include "core/number.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "tests/core/test_melody.h"

namespace tonadex::core {
namespace {

using namespace std::string_view_literals;
using test::ErrorOf;

TEST(ToNumber, ReadsWhatANumberMayLookLike) {
  std::vector<double> numbers;
  for (const std::string_view text :
       {"", "0", "  5 ", "-3", "+2", "2.5", "007", "1e2", "1E-2", "-1.25e+1", "32768", "1e-999"}) {
    numbers.push_back(ToNumber(text));
  }
  EXPECT_EQ(numbers, (std::vector<double>{0, 0, 5, -3, 2, 2.5, 7, 100, 0.01, -12.5, 32768, 0}));
}

TEST(ToNumber, RefusesTheRest) {
  for (const std::string_view text :
       {" "sv,   "x"sv,   "5."sv,  ".5"sv,  "5 5"sv, "1,5"sv,  "--1"sv,
        "+-1"sv, "- 1"sv, "1e"sv,  "1e+"sv, "e5"sv,  "0x10"sv, "&H10"sv,
        "inf"sv, "nan"sv, "\t5"sv, "5\n"sv, "5\0"sv, "5d"sv,   "\xB2"sv}) {
    EXPECT_EQ(ErrorOf([text] { ToNumber(text); }), 13) << testing::PrintToString(text);
  }
  EXPECT_EQ(ErrorOf([] { ToNumber("1e999"); }), 6);
  EXPECT_EQ(ErrorOf([] { ToNumber("-1e999"); }), 6);
}

TEST(Rounding, HalvesGoToTheEvenNeighbour) {
  std::vector<double> rounded;
  for (const double value : {0.5, 1.5, 2.5, -0.5, -1.5, -2.5, 0.49999999999999994, 2.5000001}) {
    rounded.push_back(RoundHalfEven(value));
  }
  EXPECT_EQ(rounded, (std::vector<double>{0, 2, 2, 0, -2, -2, 0, 3}));
}

TEST(Rounding, ChecksTheRangeAfterwards) {
  EXPECT_EQ(ToInt16(32767.49), 32767);
  EXPECT_EQ(ToInt16(-32768.5), -32768);
  EXPECT_EQ(ErrorOf([] { ToInt16(32767.5); }), 6);
  EXPECT_EQ(ErrorOf([] { ToInt16(-32768.51); }), 6);
  EXPECT_EQ(ToInt32(2147483647.4), 2147483647);
  EXPECT_EQ(ErrorOf([] { ToInt32(2147483647.5); }), 6);
  EXPECT_EQ(ErrorOf([] { ToInt32(-2147483649.0); }), 6);
  EXPECT_EQ(Divide(1, -4), -0.25);
  EXPECT_EQ(ErrorOf([] { Divide(0, 0); }), 11);
}

}  // namespace
}  // namespace tonadex::core
