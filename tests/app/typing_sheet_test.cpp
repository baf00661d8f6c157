#include "app/typing_sheet.h"

#include <gtest/gtest.h>

#include "tests/core/test_melody.h"

namespace tonadex::app {
namespace {

double Measured(std::string_view text, double points) {
  return 0.6 * points * static_cast<double>(text.size());
}

// The pages of as many notes as were asked for, typed by these keys.
std::vector<SheetPage> Pages(std::string_view model, const std::string& result, int notes) {
  const core::RTTTLMelody melody = test::ParsedMelody("c6" + test::Repeated(",8c", notes - 1));
  const auto steps = phones::TypingSteps(model, result, melody);
  const Drawing drawing = MelodyDrawing(melody.Text);
  return LayOutTypingSheet(
      {"Una prueba, para un m\xF3vil", *phones::FindKeypad(model), steps, drawing}, Measured);
}

bool Overlap(const Box& a, const Box& b) {
  constexpr double kTouch = 0.01;
  return a.x + kTouch < b.right() && b.x + kTouch < a.right() && a.y + kTouch < b.bottom() &&
         b.y + kTouch < a.bottom();
}

// "1:1 2:18 …" of all pages in the order of reading.
std::string GroupsOf(const std::vector<SheetPage>& pages) {
  std::string groups, number;
  for (const SheetPage& page : pages) {
    for (const SheetMark& mark : page) {
      if (mark.shape == SheetMark::Shape::kGroup) {
        groups += number + ":" + mark.text + " ";
      }
      number = mark.text;
    }
  }
  return groups;
}

void ExpectLegible(const std::vector<SheetPage>& pages, double leastPoints) {
  for (const SheetPage& page : pages) {
    for (std::size_t i = 0; i < page.size(); ++i) {
      const auto& [shape, box, points, text] = page[i];
      EXPECT_TRUE(box.x >= kSheetMargin - 0.01 && box.y >= kSheetMargin - 0.01 &&
                  box.right() <= kSheetWidth - kSheetMargin + 0.01 &&
                  box.bottom() <= kSheetHeight - kSheetMargin + 0.01)
          << text << " " << box.x << " " << box.y;
      EXPECT_LE(Measured(text, points), box.width + 0.01) << text;
      if (shape == SheetMark::Shape::kGroup) {
        EXPECT_GE(points, leastPoints) << text;
      }
      for (std::size_t j = 0; j < i; ++j) {
        const bool onKey = page[j].shape == SheetMark::Shape::kKey && box.x >= page[j].box.x &&
                           box.right() <= page[j].box.right() &&
                           box.bottom() <= page[j].box.bottom();
        const bool notes = shape == page[j].shape && shape == SheetMark::Shape::kNote;
        EXPECT_TRUE(onKey || notes || !Overlap(box, page[j].box)) << text << " on " << page[j].text;
      }
    }
  }
}

TEST(TypingSheet, HoldsEveryGroupLegiblyOnAsFewPagesAsItCan) {
  struct {
    std::string_view model;
    std::string_view group;
    int notes;
    std::size_t pages;
    double leastPoints;
  } constexpr kSheets[] = {
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
    EXPECT_EQ(laidOut.size(), pages);
    ExpectLegible(laidOut, leastPoints);
    std::string expected;
    for (int i = 1; i <= notes; ++i) {
      expected += std::to_string(i) + ":" + std::string(group) + " ";
    }
    EXPECT_EQ(GroupsOf(laidOut), expected);
  }
  ExpectLegible(Pages(" Motorola Pulsaciones Tipo 1", test::Repeated("0", 88) + " 2 ", 2), 5);
}

}  // namespace
}  // namespace tonadex::app
