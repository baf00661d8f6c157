#include "core/number.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "tests/core/table.h"
#include "tests/core/test_melody.h"

namespace tonadex::core {
namespace {

using test::ErrorOf;

TEST(ToNumber, ReadsWhatANumberMayLookLike) {
  for (const test::Row& row : test::Table("Numbers")) {
    EXPECT_EQ(ToNumber(row[0]), std::stod(row[1])) << row[0];
  }
  for (const std::string_view text : {"1e999", "-1e999"}) {
    EXPECT_EQ(ErrorOf([text] { ToNumber(text); }), 6) << text;
  }
  const auto others = test::Table("No numbers");
  for (const std::string_view text : SplitText(others[0][0], ';')) {
    EXPECT_EQ(ErrorOf([text] { ToNumber(text); }), 13) << text;
  }
  EXPECT_EQ(ErrorOf([] { ToNumber(std::string(400, '9')); }), 6);
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
