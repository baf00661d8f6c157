#include "core/text.h"

#include <gtest/gtest.h>

#include "tests/core/test_melody.h"

namespace tonadex::core {
namespace {

using test::ErrorOf;
using test::Repeated;

std::string Split(std::string_view text) {
  std::string parts;
  for (const std::string_view part : SplitText(text, ',')) {
    parts.append("[").append(part).append("]");
  }
  return parts;
}

TEST(SplitText, KeepsItsQuirks) {
  for (const auto& [text, parts] : {std::pair{"", "[]"},
                                    {"a,b", "[a][b]"},
                                    {"a,", "[a][]"},
                                    {",", "[][]"},
                                    {"a,,b", "[][][b]"},  // an empty part empties the first
                                    {"a,b,,", "[][b][][]"}}) {
    EXPECT_EQ(Split(text), parts);
  }
}

TEST(SplitText, HasItsLimits) {
  EXPECT_EQ(SplitText(Repeated("a,", 5000), ',').size(), 5001u);
  EXPECT_EQ(ErrorOf([] { SplitText(Repeated("a,", 5001), ','); }), 9);
  EXPECT_EQ(SplitText(Repeated("a", 32766) + ",", ',').size(), 2u);
  EXPECT_EQ(ErrorOf([] { SplitText(Repeated("a", 32767) + ",", ','); }), 6);
}

TEST(ReplaceAll, GoesOnceFromLeftToRight) {
  struct Case {
    std::string_view text, what, by, want;
  };
  for (const Case& c : {Case{"juh9hayjuh9hay c", "juh9hay", "#", "## c"},
                        {"juh9hjuh9hayay", "juh9hay", "#", "juh9h#ay"},
                        {"aaa", "aa", "b", "ba"},
                        {"a-a", "a", "aa", "aa-aa"},
                        {"abc", "", "x", "abc"},
                        {"", "a", "b", ""}}) {
    std::string text(c.text);
    EXPECT_EQ(ReplaceAll(text, c.what, c.by), c.want);
    EXPECT_EQ(text, c.want);
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
