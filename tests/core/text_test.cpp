#include "core/text.h"

#include <gtest/gtest.h>

#include "core/windows1252.h"
#include "tests/core/table.h"
#include "tests/core/test_melody.h"

namespace tonadex::core {
namespace {

using test::ErrorOf;
using test::Repeated;

TEST(Fold, BringsEveryByteToLowerCaseWithoutAccents) {
  std::string all;
  for (int byte = 0x80; byte < 0x100; ++byte) {
    all += static_cast<char>(byte);
  }
  EXPECT_EQ(ToUtf8(Fold("AZaz09@[`{")), "azaz09@[`{");
  EXPECT_EQ(ToUtf8(Fold(all)),
            "€\u0081‚ƒ„…†‡ˆ‰s‹œ\u008Dz\u008F\u0090‘’“”•–—˜™s›œ\u009Dzy"
            "\u00A0¡¢£¤¥¦§¨©ª«¬\u00AD®¯°±²³´µ¶·¸¹º»¼½¾¿"
            "aaaaaaæceeeeiiiiðnooooo×ouuuuyþßaaaaaaæceeeeiiiiðnooooo÷ouuuuyþy");
}

TEST(SplitText, KeepsItsQuirks) {
  for (const test::Row& row : test::Table("Splits")) {
    std::string parts;
    for (const std::string_view part : SplitText(row[0], ',')) {
      parts.append("[").append(part).append("]");
    }
    EXPECT_EQ(parts, row[1]);
  }
}

TEST(SplitText, HasItsLimits) {
  EXPECT_EQ(SplitText(Repeated("a,", 5000), ',').size(), 5001u);
  EXPECT_EQ(ErrorOf([] { SplitText(Repeated("a,", 5001), ','); }), 9);
  EXPECT_EQ(SplitText(Repeated("a", 32766) + ",", ',').size(), 2u);
  EXPECT_EQ(ErrorOf([] { SplitText(Repeated("a", 32767) + ",", ','); }), 6);
}

TEST(ReplaceAll, GoesOnceFromLeftToRight) {
  for (const test::Row& row : test::Table("Replacements")) {
    std::string text = row[0];
    EXPECT_EQ(ReplaceAll(text, row[1], row[2]), row[3]);
    EXPECT_EQ(text, row[3]);
  }
  std::string long_text = Repeated("a", 2'000'000);
  ReplaceAll(long_text, "a", "bb");  // quadratic time would show
  EXPECT_EQ(long_text, Repeated("b", 4'000'000));
}

TEST(Text, PositionsCountFromOne) {
  EXPECT_EQ(Left("abc", 2), "ab");
  EXPECT_EQ(Left("abc", 9), "abc");
  EXPECT_EQ(Right("abc", 2), "bc");
  EXPECT_EQ(Right("abc", 9), "abc");
  EXPECT_EQ(Mid("abc", 2), "bc");
  EXPECT_EQ(Mid("abc", 4), "");
  EXPECT_EQ(Mid("abc", 9), "");
  EXPECT_EQ(InStr("abab", "b"), 2);
  EXPECT_EQ(InStr("abab", "b", 3), 4);
  EXPECT_EQ(InStr("abab", "c"), 0);
  EXPECT_EQ(InStr("ab", "b", 9), 0);
  EXPECT_EQ(Trim("  a b\t "), "a b\t");
  EXPECT_EQ(Trim("  "), "");
  for (const int error : {ErrorOf([] { Left("abc", -1); }), ErrorOf([] { Right("abc", -1); }),
                          ErrorOf([] { Mid("abc", 0); }), ErrorOf([] { InStr("abc", "a", 0); })}) {
    EXPECT_EQ(error, 5);
  }
}

}  // namespace
}  // namespace tonadex::core
