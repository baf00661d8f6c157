#include "app/typing_sheet.h"

#include <gtest/gtest.h>

#include "app/pdf.h"
#include "tests/core/test_melody.h"

namespace tonadex::app::typing_sheet_test {

// The pages of a melody with this number of notes, each with these keys.
Paper Pages(std::string_view model, const std::string& result, int notes) {
  const core::RTTTLMelody melody = test::ParsedMelody("c6" + test::Repeated(",8c", notes - 1));
  const auto steps = phones::TypingSteps(model, result, melody);
  const Drawing drawing = MelodyDrawing(melody.Text);
  return LayOutTypingSheet(
      {"Una prueba, para un m\xF3vil", phones::FindKeypad(model), steps, drawing});
}

bool Overlap(const Box& a, const Box& b) {
  constexpr double kTouch = 0.01;
  return a.x + kTouch < b.right() && b.x + kTouch < a.right() && a.y + kTouch < b.bottom() &&
         b.y + kTouch < a.bottom();
}

// "1:1 2:18 …" of all pages in reading order.
std::string GroupsOf(const Paper& paper) {
  std::string groups, number;
  for (const Picture& page : paper.pages) {
    for (const Shape& mark : page) {
      if (mark.mono) {
        groups += number + ":" + mark.text + " ";
      }
      number = mark.text;
    }
  }
  return groups;
}

void ExpectLegible(const Paper& paper, double leastPoints) {
  for (const Picture& page : paper.pages) {
    for (std::size_t i = 0; i < page.size(); ++i) {
      const Box& box = page[i].box;
      const std::string& text = page[i].text;
      EXPECT_TRUE(box.x >= kSheetMargin - 0.01 && box.y >= kSheetMargin - 0.01 &&
                  box.right() <= kSheetWidth - kSheetMargin + 0.01 &&
                  box.bottom() <= kSheetHeight - kSheetMargin + 0.01)
          << text << " " << box.x << " " << box.y;
      EXPECT_LE(TextWidth(text, page[i].size, page[i].mono), box.width + 0.01) << text;
      if (page[i].mono) {
        EXPECT_GE(page[i].size, leastPoints) << text;
      }
      for (std::size_t j = 0; j < i; ++j) {
        const bool onKey = page[j].kind == Shape::Kind::kFrame && box.x >= page[j].box.x &&
                           box.right() <= page[j].box.right() &&
                           box.bottom() <= page[j].box.bottom();
        const bool notes = page[i].kind == page[j].kind && page[i].kind == Shape::Kind::kFilled;
        EXPECT_TRUE(onKey || notes || !Overlap(box, page[j].box)) << text << " on " << page[j].text;
      }
    }
  }
}

TEST(TypingSheet, HoldsEveryGroupLegiblyOnAsFewPagesAsItCan) {
  // Model, keys of each note, notes, pages, least size in points.
  constexpr std::tuple<std::string_view, std::string_view, int, std::size_t, double> kSheets[] = {
      {" Pulsaciones", "(3)9**", 8, 1, 28},
      {" Pulsaciones", "(3)9**", 50, 1, 18},
      {" Pulsaciones tipo 1", "2#88****", 100, 2, 18},
      {" Pulsaciones tipo 2", "2^88<<<<", 10, 1, 28},
      {" Motorola Pulsaciones Tipo 1", "1112227000", 50, 1, 18},
      {" Pulsaciones", "188", 1000, 5, 18},
  };
  for (const auto& [model, group, notes, pages, leastPoints] : kSheets) {
    SCOPED_TRACE(std::string(group) + std::to_string(notes));
    const auto laidOut = Pages(model, test::Repeated(std::string(group) + " ", notes), notes);
    EXPECT_EQ(laidOut.pages.size(), pages);
    ExpectLegible(laidOut, leastPoints);
    std::string expected;
    for (int i = 1; i <= notes; ++i) {
      expected += std::to_string(i) + ":" + std::string(group) + " ";
    }
    EXPECT_EQ(GroupsOf(laidOut), expected);
  }
  ExpectLegible(Pages(" Motorola Pulsaciones Tipo 1", test::Repeated("0", 88) + " 2 ", 2), 5);
}

}  // namespace tonadex::app::typing_sheet_test
