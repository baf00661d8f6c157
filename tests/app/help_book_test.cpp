#include "app/help_book.h"

#include <gtest/gtest.h>

#include "rtf/rtf_reader.h"
#include "tests/support/temp_folder.h"

namespace tonadex::app {
namespace {

using Places = std::vector<std::size_t>;

HelpBook Book(std::u16string_view drawn, std::string_view source = "{\\rtf1}") {
  HelpBook book;
  book.SetText(rtf::ReadRtf(source), drawn);
  return book;
}

// The same words in a sentence, or at the beginning of a longer line, are no heading.
TEST(HelpBook, HeadingsAreWholeLines) {
  const HelpBook book = Book(u"Uno y Dos\rUno\rDos veces\r\uFDD0Dos\uFDD1fin",
                             "{\\rtf1 Uno y Dos\\par\\s1 Uno\\par\\pard Dos veces\\par\\s2 "
                             "Dos\\par\\s1  \\par\\pard fin}");
  ASSERT_EQ(book.headings().size(), 2U);
  EXPECT_EQ(book.headings()[0].position, 10U);
  EXPECT_EQ(book.headings()[1].position, 25U);
  EXPECT_EQ(book.headings()[1].level, 2);
  EXPECT_EQ(book.headings()[1].text, u"Dos");
  for (const auto& [position, section] : {std::pair{0, 0}, {10, 0}, {24, 0}, {25, 1}, {99, 1}}) {
    EXPECT_EQ(book.SectionAt(static_cast<std::size_t>(position)), section) << position;
  }
  EXPECT_EQ(Book(u"Uno").SectionAt(0), -1);
}

TEST(HelpBook, FindsWithoutAccentsOrCaseInPlace) {
  const struct {
    std::u16string_view text, wanted;
    Places hits;
  } cases[] = {{u"Más MAS masmas", u"MÁS", {0, 4, 8, 11}},
               {u"aaaa", u"aa", {0, 2}},
               {u"a", u"", {}},
               {u"ÁÑü\u2029\u00A0ß\tŒ€÷×", u"anu  ß œ€÷×", {0}},
               {u"ñandú", u"ÑANDU", {0}},
               {u"ŠŽŸÿÐÞ", u"szyyðþ", {0}}};
  for (const auto& c : cases) {
    HelpBook book = Book(c.text);
    book.Search(c.wanted, 0);
    EXPECT_EQ(book.hits(), c.hits);
  }
}

TEST(HelpBook, HitsFollowTheReaderAndGoRound) {
  HelpBook book = Book(u"a b a b a");
  book.Search(u"a", 1);
  EXPECT_EQ(book.HitsInWords(), "2 de 3");
  for (const std::size_t want : {8U, 0U, 4U}) {
    EXPECT_EQ(book.Run(HelpCommand::kNext, 0), HelpChange::kHit);
    EXPECT_EQ(book.Hit(), want);
  }
  book.Run(HelpCommand::kPrevious, 0);
  book.Run(HelpCommand::kPrevious, 0);
  EXPECT_EQ(book.HitsInWords(), "3 de 3");
  book.Search(u"b", 9);
  EXPECT_EQ(book.HitsInWords(), "1 de 2") << "after the end it begins again";
  book.Search(u"z", 0);
  EXPECT_EQ(book.HitsInWords(), "No aparece");
  EXPECT_EQ(book.Run(HelpCommand::kNext, 0), HelpChange::kNothing);
}

TEST(HelpBook, GoesBackToWhereTheReaderWas) {
  HelpBook book = Book(u"");
  book.GoTo(5, 40);
  book.GoTo(45, 90);
  const auto run = [&book](HelpCommand command, std::size_t here) {
    return book.Run(command, here) == HelpChange::kPlace ? book.Place() : std::size_t{999};
  };
  EXPECT_EQ(run(HelpCommand::kBack, 91), 45U);
  EXPECT_EQ(run(HelpCommand::kBack, 46), 5U);
  EXPECT_EQ(run(HelpCommand::kBack, 5), 999U);
  EXPECT_EQ(run(HelpCommand::kForward, 5), 46U);
  book.GoTo(46, 60);
  EXPECT_FALSE(book.Can(HelpCommand::kForward)) << "another way was taken";
}

TEST(HelpBook, ZoomHasLimitsAndANormalSize) {
  HelpBook book = Book(u"");
  for (const HelpCommand command : {HelpCommand::kLarger, HelpCommand::kSmaller}) {
    int steps = 0;
    for (; steps < 20 && book.Run(command, 0) == HelpChange::kZoom; ++steps) {
    }
    EXPECT_TRUE(steps > 2 && steps < 20 && !book.Can(command));
    EXPECT_EQ(book.Zoom() > 1, command == HelpCommand::kLarger);
  }
  EXPECT_EQ(book.Run(HelpCommand::kNormal, 0), HelpChange::kZoom);
  EXPECT_EQ(book.ZoomInWords(), "100 %");
}

TEST(HelpBook, SaysWhyItCannotBeShown) {
  const test::TempFolder folder;
  folder.Write("otro{1}.hlp", "MZ\x01\x02");
  folder.Write("bien.hlp", "{\\rtf1 x}");
  EXPECT_TRUE(ReadHelp(folder / "bien.hlp").found);
  for (const auto& [file, why] :
       {std::pair<std::string, std::u16string>{"nada.hlp", u"No se encuentra"},
        {"otro{1}.hlp", u"no es una ayuda"}}) {
    const HelpSource page = ReadHelp(folder / file);
    EXPECT_FALSE(page.found);
    const std::u16string text = rtf::PlainText(rtf::ReadRtf(page.rtf));
    EXPECT_TRUE(text.starts_with(u"No se puede mostrar la ayuda\n"));
    EXPECT_TRUE(text.find(why) != text.npos);
    EXPECT_NE(text.find(std::u16string(file.begin(), file.end())), text.npos);
  }
}

}  // namespace
}  // namespace tonadex::app
