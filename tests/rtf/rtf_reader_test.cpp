#include "rtf/rtf_reader.h"

#include <gtest/gtest.h>

#include <chrono>

#include "core/windows1252.h"
#include "tests/core/table.h"
#include "tests/core/test_melody.h"

namespace tonadex::rtf::rtf_reader_test {

using test::Repeated;

// Characters outside Latin-1, tabs and line breaks as their numbers, "<8364>".
std::string Utf8(const std::u16string& text) {
  std::string bytes;
  for (const char16_t unit : text) {
    bytes += unit < 0x20 || unit > 0xFF ? "<" + std::to_string(unit) + ">"
                                        : core::ToUtf8(std::string(1, static_cast<char>(unit)));
  }
  return bytes;
}

std::string Text(const Colour& colour) {
  return std::to_string(colour.red) + "." + std::to_string(colour.green) + "." +
         std::to_string(colour.blue);
}

void Say(std::string& words, const std::string& word, bool said) {
  words += said ? (words.empty() ? "" : " ") + word : "";
}

std::string Words(const RunFormat& format) {
  std::string words;
  Say(words, "f" + std::to_string(format.font), format.font != -1);
  Say(words, "fs" + std::to_string(format.halfPoints), format.halfPoints != kDefaultHalfPoints);
  for (const auto& [word, said] : {std::pair{"b", format.bold},
                                   {"i", format.italic},
                                   {"ul", format.underline},
                                   {"strike", format.strike}}) {
    Say(words, word, said);
  }
  Say(words, "super", format.script == Script::kSuper);
  Say(words, "sub", format.script == Script::kSub);
  Say(words, "ink" + Text(format.colour.value_or(Colour{})), format.colour.has_value());
  Say(words, "ground" + Text(format.ground.value_or(Colour{})), format.ground.has_value());
  return words;
}

std::string Words(const ParagraphFormat& format) {
  static constexpr const char* kAlignments[] = {"", "centre", "right", "justify"};
  static constexpr const char* kTabs[] = {"tab", "ctab", "rtab", "dtab"};
  static constexpr const char* kSides[] = {"top", "left", "bottom", "right"};
  std::string words = kAlignments[static_cast<std::size_t>(format.alignment)];
  const std::pair<const char*, int> numbers[] = {
      {"h", format.heading}, {"s", format.style},   {"li", format.left}, {"ri", format.right},
      {"fi", format.first},  {"sb", format.before}, {"sa", format.after}};
  for (const auto& [word, value] : numbers) {
    Say(words, word + std::to_string(value), value != 0);
  }
  Say(words, (format.lineFactor ? "lines" : "sl") + std::to_string(format.lineHeight),
      format.lineHeight != 0);
  Say(words, "page", format.pageBefore);
  Say(words, "shade" + Text(format.shading.value_or(Colour{})), format.shading.has_value());
  for (const Tab& tab : format.tabs) {
    Say(words, kTabs[static_cast<std::size_t>(tab.kind)] + std::to_string(tab.position), true);
  }
  for (std::size_t side = 0; side < 4; ++side) {
    const Border& border = format.borders[side];
    Say(words, kSides[side] + std::to_string(border.width), border.width != 0);
    Say(words, "+" + std::to_string(border.space), border.space != 0);
    Say(words, "in" + Text(border.colour.value_or(Colour{})), border.colour.has_value());
  }
  return words;
}

// The paragraphs, separated by " / ": the format of each, then its runs as format and text.
std::string Describe(const Document& document) {
  std::string text;
  for (const Paragraph& paragraph : document.paragraphs) {
    text += (text.empty() ? "[" : " / [") + Words(paragraph.format) + "]";
    for (const auto& run : paragraph.runs) {
      text += "(" + Words(run.format) + ")" + Utf8(run.text);
    }
  }
  return text;
}

// Inputs that the table cannot contain, then the table.
TEST(ReadRtf, TextAndFormats) {
  const std::pair<std::string_view, std::string> cases[] = {
      {"", ""},
      {"{\\rtf1 se\xF1"
       "al 5\x80}",
       "[]()señal 5<8364>"},
      {"{\\rtf1 a\r\nb\nc\\\nd\\\r\ne\\par\r\nf\\\tg}", "[]()abc / []()d / []()e / []()f<9>g"},
      {R"({\rtf1\lquote a\rquote\~\_\-\bullet\tab b\line c\emdash\endash\ldblquote\rdblquote})",
       "[]()<8216>a<8217>\u00A0<8209>\u00AD<8226><9>b<8232>c<8212><8211><8220><8221>"}};
  for (const auto& [source, want] : cases) {
    EXPECT_EQ(Describe(ReadRtf(source)), want) << source;
  }
  test::ExpectRows("Sources", [](const test::Row& row) { return Describe(ReadRtf(row[0])); });
}

TEST(ReadRtf, Tables) {
  const Document document = ReadRtf(
      R"({\rtf1\deff1{\fonttbl{\f0\froman\fcharset0{\*\panose 02}Tinta;}{\f1\fmodern M\'e1quina;}})"
      R"({\stylesheet{\s0 Normal;}{\s1\b T\'edtulo;}{\*\cs9 Otro;}})"
      R"(\paperw8392\paperh11906\margl0\margr100\margt-1\margb99999 texto})");
  std::string fonts = std::to_string(document.defaultFont);
  for (const auto& [number, font] : document.fonts) {
    fonts += " " + std::to_string(number) + Utf8(font.name) +
             (font.family == FontFamily::kSerif ? "(serif)" : "") +
             (font.family == FontFamily::kFixed ? "(fixed)" : "");
  }
  EXPECT_EQ(fonts, "1 0Tinta(serif) 1Máquina(fixed)");
  EXPECT_EQ(document.styles, (std::map<int, std::u16string>{{0, u"Normal"}, {1, u"T\u00EDtulo"}}));
  const Page& page = document.page;
  EXPECT_EQ((std::array{page.width, page.height, page.left, page.right, page.top, page.bottom}),
            (std::array{8392, 11906, 0, 100, 0, kMaxTwips}));
  EXPECT_EQ(Describe(document), "[]()texto");
}

// A quadratic reader would need hours for these.
TEST(ReadRtf, MegabytesOfAnythingInNoTime) {
  const auto start = std::chrono::steady_clock::now();
  for (const std::string_view part :
       {"{", "}", "{}", "\\", "{\\b x", "{\\*", "\\tx1 ", "\\par ", "{\\fonttbl", "\\u1 ", "\\'",
        "{\\colortbl;;", "\\f1;x", "a", "{\\stylesheet\\s1 x", "\\bin", "\\b a\\b0 b"}) {
    ReadRtf("{\\rtf1 " + Repeated(part, 200'000));
  }
  EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(60));
}

// Laying out and printing a paragraph of megabytes as one takes minutes.
TEST(ReadRtf, CutsLongParagraphs) {
  const std::string words = Repeated("una palabra ", 3'000), one(40'000, 'x');
  const Document document = ReadRtf("{\\rtf1\\sb20\\sa30\\fi40\\outlinelevel0\\pagebb " + words +
                                    "\\b " + words + one + "\\par}");
  std::u16string all;
  const std::size_t last = document.paragraphs.size() - 1;
  ASSERT_GT(last, 6u);
  for (std::size_t i = 0; i <= last; ++i) {
    const auto& [format, runs] = document.paragraphs[i];
    std::u16string text;
    for (const auto& run : runs) {
      text += run.text;
    }
    EXPECT_LE(text.size(), kMaxParagraphText);
    EXPECT_TRUE(i > 3 || text.ends_with(u' '));
    EXPECT_EQ(Words(format), i == 0 ? "h1 fi40 sb20 page" : i == last ? "sa30" : "");
    all += text;
  }
  EXPECT_EQ(Utf8(all), words + words + one);
}

TEST(ReadRtf, DeepNestingRestoresFormats) {
  const std::string open = Repeated("{\\b", 50'000);
  const std::string close(50'000, '}');
  EXPECT_EQ(Describe(ReadRtf("{\\rtf1 a" + open + " b" + close + "c}")), "[]()a(b)b()c");
  const std::string deep(3'000'000, '{');
  const std::string back(3'000'000, '}');
  EXPECT_EQ(Describe(ReadRtf("{\\rtf1 a" + deep + "\\i b{\\*\\x{c}}" + back + "d}e")),
            "[]()a(i)b()d");
}

}  // namespace tonadex::rtf::rtf_reader_test
