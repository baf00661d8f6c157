#include "core/windows1252.h"

#include <gtest/gtest.h>

#include "core/text.h"
#include "tests/core/table.h"

namespace tonadex::core {
namespace {

std::string AllBytes() {
  std::string bytes;
  for (int code = 0; code < 256; ++code) {
    bytes += static_cast<char>(code);
  }
  return bytes;
}

// The upper half of the code page, typed out; \u escapes where a character cannot be seen.
constexpr std::string_view kUpperHalf =
    "€\u0081‚ƒ„…†‡ˆ‰Š‹Œ\u008DŽ\u008F\u0090‘’“”•–—˜™š›œ\u009DžŸ"
    "\u00A0¡¢£¤¥¦§¨©ª«¬\u00AD®¯°±²³´µ¶·¸¹º»¼½¾¿"
    "ÀÁÂÃÄÅÆÇÈÉÊËÌÍÎÏÐÑÒÓÔÕÖ×ØÙÚÛÜÝÞßàáâãäåæçèéêëìíîïðñòóôõö÷øùúûüýþÿ";

TEST(Windows1252, EveryByteGoesToUtf8AndBack) {
  const std::string bytes = AllBytes();
  EXPECT_EQ(ToUtf8(bytes), bytes.substr(0, 128) + std::string(kUpperHalf));
  EXPECT_EQ(FromUtf8(ToUtf8(bytes)), bytes);
  EXPECT_EQ(FromOutside(ToUtf8(bytes)), bytes);
  EXPECT_EQ(FromOutside(bytes), bytes) << "no UTF-8, so taken as it is";
}

TEST(Windows1252, CaseFollowsTheCodePage) {
  const std::string upper =
      "ABCDEFGHIJKLMNOPQRSTUVWXYZ" + FromUtf8("ŠŒŽŸÀÁÂÃÄÅÆÇÈÉÊËÌÍÎÏÐÑÒÓÔÕÖØÙÚÛÜÝÞ");
  const std::string lower =
      "abcdefghijklmnopqrstuvwxyz" + FromUtf8("šœžÿàáâãäåæçèéêëìíîïðñòóôõöøùúûüýþ");
  EXPECT_EQ(ToLower(upper), lower);
  EXPECT_EQ(ToUpper(lower), upper);
  for (const char c : AllBytes()) {
    EXPECT_EQ(ToLower(c) == c, upper.find(c) == std::string::npos) << int{Code(c)};
    EXPECT_EQ(ToUpper(c) == c, lower.find(c) == std::string::npos) << int{Code(c)};
  }
}

TEST(Windows1252, TextFromOutsideIsUtf8OnlyWhenAllOfItIs) {
  for (const test::Row& row : test::Table("Outside texts")) {
    EXPECT_EQ(FromUtf8(row[0]), row[1]) << testing::PrintToString(row[0]);
    EXPECT_EQ(IsUtf8(row[0]), row[2] == "valid") << testing::PrintToString(row[0]);
    EXPECT_EQ(FromOutside(row[0]), row[2] == "valid" ? row[1] : row[0]);
  }
  EXPECT_EQ(FromOutside("\xEF\xBB\xBFx"), "x") << "byte order mark";
  EXPECT_EQ(u8"¿melodía…? €"_w,
            "\xBFmelod\xED"
            "a\x85? \x80");
}

}  // namespace
}  // namespace tonadex::core
