#include "core/windows1252.h"

#include <gtest/gtest.h>

#include "core/text.h"

namespace tonadex::core {
namespace {

using namespace std::string_view_literals;

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

TEST(Windows1252, MalformedAndForeignUtf8) {
  struct Case {
    std::string_view utf8, want;
    bool valid;
  };
  constexpr Case kCases[] = {
      {"a\xC3", "a?", false},  // cut off
      {"\xE2\x82", "??", false},
      {"\x80z", "?z", false},     // continuation without a lead
      {"\xC0\x80", "??", false},  // overlong forms
      {"\xC1\xBF", "??", false},
      {"\xE0\x9F\xBF", "???", false},
      {"\xF0\x8F\xBF\xBF", "????", false},
      {"\xED\xA0\x80", "???", false},       // surrogate
      {"\xF4\x90\x80\x80", "????", false},  // past U+10FFFF
      {"\xF5\x80\x80\x80", "????", false},
      {"\xFE\xFF", "??", false},
      {"\xED\x9F\xBF\xEE\x80\x80", "??", true},  // both sides of the surrogates, not in the page
      {"\xF4\x8F\xBF\xBF", "?", true},
      {"\xC2\x80", "?", true},  // U+0080 itself: its place is taken by the euro
      {"ñ中😀", "\xF1??", true},
      {"\0n\0"sv, "\0n\0"sv, true},
  };
  for (const Case& c : kCases) {
    EXPECT_EQ(FromUtf8(c.utf8), c.want) << testing::PrintToString(c.utf8);
    EXPECT_EQ(IsUtf8(c.utf8), c.valid) << testing::PrintToString(c.utf8);
  }
}

TEST(Windows1252, OutsideTextIsUtf8OnlyWhenAllOfItIs) {
  EXPECT_EQ(FromOutside("canci\xC3\xB3n"), "canci\xF3n");
  EXPECT_EQ(FromOutside("canci\xF3n"), "canci\xF3n");
  EXPECT_EQ(FromOutside("\xC3\xB3 \xF3"), "\xC3\xB3 \xF3");
  EXPECT_EQ(FromOutside("\xEF\xBB\xBFx"), "x") << "byte order mark";
  EXPECT_EQ(u8"¿melodía…? €"_w,
            "\xBFmelod\xED"
            "a\x85? \x80");
}

}  // namespace
}  // namespace tonadex::core
