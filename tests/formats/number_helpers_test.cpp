#include "formats/number_helpers.h"

#include <gtest/gtest.h>

namespace tonadex::formats {
namespace {

TEST(NumberHelpers, DigitsWordsAndShifts) {
  EXPECT_EQ(ToBinary8(5) + " " + ToBinary8(0) + " " + ToBinary8(256),
            "00000101 00000000 100000000");
  EXPECT_EQ(BitsToHex("00000101") + BitsToHex("000") + BitsToHex(""), "500");
  EXPECT_EQ(BitsToHex("1011111000010"), "17C2");
  EXPECT_EQ(BitsToHex(ToBinary8(0x89ABCDEF)), "89ABCDEF");
  EXPECT_EQ(LowWord(0x12345), 0x2345);
  EXPECT_EQ(LowWord(-32768), 0x8000);
  EXPECT_EQ(ShiftRight(5000000, 16), 76);
  EXPECT_EQ(ShiftRight(-7, 1), -3) << "towards 0";
}

}  // namespace
}  // namespace tonadex::formats
