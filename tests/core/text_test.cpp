// Texts, numbers and the names of melody files.
#include "core/text.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <new>
#include <stdexcept>

#include "core/error_words.h"
#include "core/melody_file.h"
#include "core/number.h"
#include "core/runtime_error.h"
#include "core/windows1252.h"
#include "tests/core/table.h"
#include "tests/core/test_melody.h"

namespace tonadex::core::text_test {

using test::AllBytes;
using test::ErrorOf;
using test::Repeated;

TEST(Fold, BringsEveryByteToLowerCaseWithoutAccents) {
  EXPECT_EQ(ToUtf8(Fold("AZaz09@[`{")), "azaz09@[`{");
  EXPECT_EQ(ToUtf8(Fold(AllBytes().substr(0x80))),
            "€\u0081‚ƒ„…†‡ˆ‰s‹œ\u008Dz\u008F\u0090‘’“”•–—˜™s›œ\u009Dzy"
            "\u00A0¡¢£¤¥¦§¨©ª«¬\u00AD®¯°±²³´µ¶·¸¹º»¼½¾¿"
            "aaaaaaæceeeeiiiiðnooooo×ouuuuyþßaaaaaaæceeeeiiiiðnooooo÷ouuuuyþy");
}

TEST(SplitText, KeepsItsQuirksAndLimits) {
  test::ExpectRows("Splits", [](const test::Row& row) {
    std::string parts;
    for (const std::string_view part : SplitText(row[0], ',')) {
      parts.append("[").append(part).append("]");
    }
    return parts;
  });
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
  ReplaceAll(long_text, "a", "bb");  // quadratic time would be noticed
  EXPECT_EQ(long_text, Repeated("b", 4'000'000));
}

TEST(Text, PositionsCountFromOne) {
  EXPECT_EQ(Left("abc", 9), "abc");
  EXPECT_EQ(std::string(Left("abc", 2)).append(Right("abc", 2)), "abbc");
  EXPECT_EQ(Right("abc", 9), "abc");
  EXPECT_EQ(Mid("abc", 2), "bc");
  EXPECT_EQ(Mid("abc", 9), "");
  EXPECT_EQ(InStr("abab", "b"), 2);
  EXPECT_EQ(InStr("abab", "b", 3), 4);
  EXPECT_EQ(InStr("abab", "c"), 0);
  EXPECT_EQ(InStr("ab", "b", 9), 0);
  EXPECT_EQ(Trim("  a b\t "), "a b\t");
  for (const int error : {ErrorOf([] { Left("abc", -1); }), ErrorOf([] { Right("abc", -1); }),
                          ErrorOf([] { Mid("abc", 0); }), ErrorOf([] { InStr("abc", "a", 0); })}) {
    EXPECT_EQ(error, 5);
  }
}

// The upper half of the code page, typed out; invisible characters as \u escapes.
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

TEST(ErrorWords, AreSpanishAndNameTheFile) {
  const auto full = std::make_error_code(std::errc::no_space_on_device);
  const auto odd = std::make_error_code(std::errc::no_child_process);
  EXPECT_EQ(ErrorWords(full), u8"el disco está lleno"_w);
  EXPECT_EQ(ErrorWords(odd), "error " + std::to_string(odd.value()));
  EXPECT_EQ(ErrorWords(std::bad_alloc()), "falta memoria");
  EXPECT_EQ(ErrorWords(std::out_of_range("at")), "fallo interno del programa");
  EXPECT_EQ(ErrorWords(std::filesystem::filesystem_error("copy", u8"/ñ", full)),
            u8"«/ñ»: el disco está lleno"_w);
  EXPECT_EQ(ErrorWords(std::system_error(full, "write")), u8"el disco está lleno"_w);
  EXPECT_EQ(ErrorWords(RunTimeError(ErrorNumber::kTransfer, "\xF1")), "\xF1");
  EXPECT_EQ(ErrorWords(std::runtime_error("ñ")), "\xF1") << "others may speak UTF-8";
}

TEST(ToNumber, ReadsWhatANumberMayLookLike) {
  for (const test::Row& row : test::Table("Numbers")) {
    EXPECT_EQ(ToNumber(row[0]), std::stod(row[1])) << row[0];
  }
  for (const std::string& text :
       {std::string("1e999"), std::string("-1e999"), Repeated("9", 400)}) {
    EXPECT_EQ(ErrorOf([&] { ToNumber(text); }), 6) << text;
  }
  const auto others = test::Table("No numbers");
  for (const std::string_view text : SplitText(others[0][0], ';')) {
    EXPECT_EQ(ErrorOf([text] { ToNumber(text); }), 13) << text;
  }
}

TEST(Rounding, HalvesGoToTheEvenNeighbourAndTheRangeIsCheckedAfterwards) {
  for (const auto& [value, rounded] :
       {std::pair{0.5, 0}, {1.5, 2}, {2.5, 2}, {-0.5, 0}, {-1.5, -2}, {-2.5, -2}}) {
    EXPECT_EQ(RoundHalfEven(value), rounded);
  }
  EXPECT_EQ(RoundHalfEven(0.49999999999999994), 0);
  EXPECT_EQ(RoundHalfEven(2.5000001), 3);
  EXPECT_EQ(ToInt16(32767.49), 32767);
  EXPECT_EQ(ToInt16(-32768.5), -32768);
  EXPECT_EQ(ToInt32(2147483647.4), 2147483647);
  for (const double value : {32767.5, -32768.51}) {
    EXPECT_EQ(ErrorOf([value] { ToInt16(value); }), 6);
  }
  for (const double value : {2147483647.5, -2147483649.0}) {
    EXPECT_EQ(ErrorOf([value] { ToInt32(value); }), 6);
  }
  EXPECT_EQ(Divide(1, -4), -0.25);
  EXPECT_EQ(ErrorOf([] { Divide(0, 0); }), 11);
}

TEST(RepertoireRow, IsNameAndStemThatNameTheFile) {
  for (const test::Row& row : test::Table("Rows")) {
    MelodyRow made;
    const int error = ErrorOf([&] { made = RepertoireRow(row[1], row[0]); });
    EXPECT_EQ(made.text, row[2]) << row[0];
    EXPECT_EQ(std::to_string(error != 0 ? error : made.number), row[3]) << row[0];
  }
  test::ExpectRows("Names", [](const test::Row& row) { return ScanName(row[0]); });
  test::ExpectRows("Stems", [](const test::Row& row) { return MelodyFileName(row[0], 120); });
  EXPECT_EQ(UndoSharpEscape("8cjuh9hay.5,juh9ha,JUH9HAY"), "8c#.5,juh9ha,JUH9HAY");
}

}  // namespace tonadex::core::text_test
