#include "app/help_book.h"

#include <gtest/gtest.h>

#include <algorithm>

#include "rtf/rtf_reader.h"
#include "tests/support/temp_folder.h"

namespace tonadex::app::help_book_test {

using Places = std::vector<std::size_t>;

// A help book whose page reports texts as they are.
struct Page : HelpPage {
  explicit Page(std::u16string drawn, std::string_view source = "{\\rtf1}")
      : text(std::move(drawn)) {
    folder.Write("manual", source);
    book.Open(folder / "manual");
  }
  std::u16string DrawManual() override { return text; }
  void DrawContents() override {}
  void DrawSection(int drawn) override { section = drawn; }
  void DrawHits() override { hits = book.hits(); }
  void DrawHit() override { hit = *book.Hit(); }
  void DrawButtons() override { words = book.HitsInWords(); }
  std::size_t Top() const override { return top; }
  void ScrollTo(std::size_t position) override { top = position; }

  std::size_t Run(HelpCommand command, std::size_t from) {
    top = from;
    book.Run(command);
    return top;
  }

  test::TempFolder folder;
  std::u16string text;
  HelpBook book{*this};
  std::size_t top = 0, hit = 999;
  int section = -2;
  Places hits;
  std::string words;
};

// The same words within a sentence, or at the start of a longer line, are not a heading.
TEST(HelpBook, HeadingsAreWholeLines) {
  Page page(u"Uno y Dos\rUno\rDos veces\r\uFDD0Dos\uFDD1fin",
            "{\\rtf1 Uno y Dos\\par\\s1 Uno\\par\\pard Dos veces\\par\\s2 "
            "Dos\\par\\s1  \\par\\pard fin}");
  const auto& headings = page.book.headings();
  ASSERT_EQ(headings.size(), 2U);
  EXPECT_EQ(headings[0].position, 10U);
  EXPECT_EQ(headings[1].position, 25U);
  EXPECT_EQ(headings[1].level, 2);
  EXPECT_EQ(headings[1].text, u"Dos");
  for (const auto& [position, section] : {std::pair{0, 0}, {10, 0}, {24, 0}, {25, 1}, {99, 1}}) {
    page.top = static_cast<std::size_t>(position);
    page.book.Scrolled();
    EXPECT_EQ(page.section, section) << position;
  }
  EXPECT_EQ(Page(u"Uno").section, -1);
}

TEST(HelpBook, FindsWithoutAccentsOrCaseInPlace) {
  const std::tuple<std::u16string, std::u16string, Places> cases[] = {
      {u"Más MAS masmas", u"MÁS", {0, 4, 8, 11}},
      {u"aaaa", u"aa", {0, 2}},
      {u"a", u"", {}},
      {u"ÁÑü\u2029\u00A0ß\tŒ€÷×", u"anu  ß œ€÷×", {0}},
      {u"ñandú", u"ÑANDU", {0}},
      {u"ŠŽŸÿÐÞ", u"szyyðþ", {0}}};
  for (const auto& [text, wanted, hits] : cases) {
    Page page(text);
    page.book.Search(wanted);
    EXPECT_EQ(page.hits, hits);
  }
}

TEST(HelpBook, HitsFollowTheReaderAndGoRound) {
  Page page(u"a b a b a");
  page.top = 4;
  page.book.Search(u"a");
  EXPECT_EQ(page.words, "2 de 3");
  for (const std::size_t want : {8U, 0U, 4U}) {
    page.book.Run(HelpCommand::kNext);
    EXPECT_EQ(page.hit, want);
  }
  page.book.Run(HelpCommand::kPrevious);
  page.book.Run(HelpCommand::kPrevious);
  EXPECT_EQ(page.words, "3 de 3");
  page.book.Run(HelpCommand::kLarger);
  EXPECT_EQ(page.words, "3 de 3") << "another size changes nothing of it";
  page.top = 9;
  page.book.Search(u"b");
  EXPECT_EQ(page.words, "1 de 2") << "after the end it begins again";
  page.book.Search(u"z");
  EXPECT_EQ(page.words, "No aparece");
  EXPECT_EQ(page.hits, Places());
  page.book.Run(HelpCommand::kNext);
  EXPECT_EQ(page.hit, 2U);
}

TEST(HelpBook, GoesBackToWhereTheReaderWas) {
  Page page(u"Uno\rDos\rTres", "{\\rtf1\\s1 Uno\\par Dos\\par Tres\\par}");
  page.book.GoTo(1);
  page.top = 5;
  page.book.GoTo(2);
  EXPECT_EQ(page.top, 8U);
  EXPECT_EQ(page.Run(HelpCommand::kBack, 9), 5U);
  EXPECT_EQ(page.section, 1);
  EXPECT_EQ(page.Run(HelpCommand::kBack, 6), 0U);
  EXPECT_EQ(page.Run(HelpCommand::kBack, 3), 3U);
  EXPECT_EQ(page.Run(HelpCommand::kForward, 3), 6U);
  page.book.GoTo(0);
  EXPECT_FALSE(page.book.Can(HelpCommand::kForward)) << "another way was taken";
}

TEST(HelpBook, ZoomHasLimitsAndANormalSize) {
  Page page(u"");
  const auto normal = std::ranges::find(HelpButtons(), HelpCommand::kNormal, &HelpButton::command);
  for (const HelpCommand command : {HelpCommand::kLarger, HelpCommand::kSmaller}) {
    int steps = 0;
    for (; steps < 20 && page.book.Can(command); ++steps) {
      EXPECT_EQ(page.Run(command, 7), 7U) << "the place stays";
    }
    EXPECT_TRUE(steps > 2 && steps < 20);
    EXPECT_EQ(page.book.Zoom() > 1, command == HelpCommand::kLarger);
    EXPECT_NE(page.book.Caption(*normal), u"100 %");
  }
  page.book.Run(HelpCommand::kNormal);
  EXPECT_EQ(page.book.Caption(*normal), u"100 %");
}

TEST(HelpBook, SaysWhyItCannotBeShownAndTriesAgain) {
  const test::TempFolder folder;
  folder.Write("otro{1}.hlp", "MZ\x01\x02");
  Page page(u"");
  for (const auto& [file, why] :
       {std::pair<std::string, std::u16string>{"nada.hlp", u"No se encuentra"},
        {"otro{1}.hlp", u"no es una ayuda"}}) {
    page.book.Open(folder / file);
    const std::u16string text = rtf::PlainText(page.book.manual());
    EXPECT_TRUE(text.starts_with(u"No se puede mostrar la ayuda\n"));
    EXPECT_TRUE(text.find(why) != text.npos);
    EXPECT_NE(text.find(std::u16string(file.begin(), file.end())), text.npos);
  }
  folder.Write("otro{1}.hlp", "{\\rtf1 x}");
  page.book.Open(folder / "otro{1}.hlp");
  EXPECT_EQ(rtf::PlainText(page.book.manual()), u"x\n");
}

}  // namespace tonadex::app::help_book_test
