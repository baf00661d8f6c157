#include "app/display_layout.h"

#include <gtest/gtest.h>

#include <algorithm>

#include "tests/core/table.h"
#include "tests/core/test_melody.h"

namespace tonadex::app::display_layout_test {

std::string Of(std::string_view text, const TextRange& range) {
  return std::string(text.substr(range.from, range.to - range.from));
}

// Groups with ";" between them and the held part in brackets.
std::string Groups(std::string_view result) {
  std::string text;
  for (const ResultGroup& group : ResultGroups(result)) {
    std::string one = Of(result, group.text);
    if (!group.held.empty()) {
      one.insert(group.held.to - group.text.from, "]")
          .insert(group.held.from - group.text.from, "[");
    }
    text += one + ";";
  }
  return text;
}

TEST(ResultGroups, KeepGroupsWhole) {
  test::ExpectRows("Groups", [](const test::Row& row) { return Groups(row[0]); });
}

DisplayText Shown(std::string_view result, bool counted, std::size_t columns) {
  return LayOutDisplay(result, ResultGroups(result), counted, columns);
}

TEST(DisplayLayout, TearsNoGroupApart) {
  for (const auto& [result, counted, columns, want] :
       {std::tuple{"4c1  8d1 ", false, 20u, "4c1  8d1 "},
        {"4c1 8d1 2e1", false, 8, "4c1 8d1\n2e1"},
        {"22 333 (4) 55", true, 12, "1  22   333\n3  (4)  55"},
        {"22 3 44 55555 6 (7)", true, 15, "1  22   3    44\n4  55555     6\n6  (7)"},
        {"1 1 1 1 22 1 22 1", true, 20, "1  1   1   1   1\n5  22  1   22  1"},
        {"x:d=4:c,d,e", false, 8, "x:d=4:c,\nd,e"},
        {"BEGIN:X\r\n\r\nEND:X\r", false, 40, "BEGIN:X\n\nEND:X\n"},
        {"abcdefghij", false, 4, "abcd\nefgh\nij"},
        {"", true, 10, ""}}) {
    EXPECT_EQ(Shown(result, counted, columns).text, want) << result;
  }
}

ResultDisplay Display() {
  return ResultDisplay([](int pixels) { return TypeMeasure{pixels * 0.6, pixels * 1.2}; });
}

// At any width, each group copies as its own text, and all groups together as the whole result.
TEST(DisplayLayout, CopiesTheResultAndNotItsLayout) {
  for (const std::string result : {"22 8* 333 (4) 5555 8 (66) 7 ", "  a\r\n\r\nbb,ccc,d\n (e) (f)",
                                   "   ", "\t(a) (b)", "Vals:d=4,o=5,b=160:e6,8b(,),(x)"}) {
    const auto groups = ResultGroups(result);
    for (const bool counted : {false, true}) {
      ResultDisplay display = Display();
      display.SetResult(result, groups, counted);
      display.SetPixelSize(30);
      for (int columns = 1; columns < 40; ++columns) {
        display.SetPlace(columns * 18.1, 100);
        const DisplayText& shown = display.shown();
        ASSERT_EQ(shown.groups.size(), groups.size());
        for (std::size_t i = 0; i < groups.size(); ++i) {
          EXPECT_EQ(display.Part(shown.groups[i]), Of(result, groups[i].text)) << columns;
        }
        EXPECT_EQ(display.Part({0, shown.text.size()}), result) << columns;
        if (result.starts_with("22")) {
          ASSERT_EQ(shown.held.size(), 2U);
          EXPECT_EQ(display.Part(shown.held[0]), "(4)") << columns;
        }
      }
      EXPECT_EQ(display.Part({3, 2}), "");
    }
  }
}

// One letter per move, then the group that is marked: Previous, Next, Up, Down, line Begin, line
// End, First, Last.
TEST(DisplayLayout, TheMarkMovesFromGroupToGroup) {
  const DisplayText shown = Shown("aa bb cc\nd\nee ff", false, 40);  // 0 1 2 / 3 / 4 5
  const std::string_view letters = "PNUDBEFL";
  for (const std::string_view moves : core::SplitText(
           "N0 P5 D0 NP0 NNN2 LN5 NND3 NNDD4 LU3 LUU0 FU0 LD5 FE2 FEB0 LB4 FED3 FDDEUL5", ' ')) {
    int marked = -1;
    for (const char letter : moves.substr(0, moves.size() - 1)) {
      marked = MovedMark(shown, marked, static_cast<Move>(letters.find(letter)));
    }
    EXPECT_EQ(marked, moves.back() - '0') << moves;
  }
  EXPECT_EQ(MovedMark({}, -1, Move::kNext), -1);
}

TEST(DisplayLayout, ThePointerMarksTheGroupUnderIt) {
  ResultDisplay display = Display();
  display.SetPlace(1000, 100);
  display.SetResult("aa bb,cc", ResultGroups("aa bb,cc"), true);
  ASSERT_EQ(display.shown().text, "1  aa   bb,cc");
  for (const auto& [position, want] :
       {std::pair{0, -1}, {3, 0}, {5, 0}, {6, -1}, {8, 1}, {11, 2}, {13, 2}, {14, -1}}) {
    display.MarkAt(static_cast<std::size_t>(position));
    EXPECT_EQ(display.marked(), want) << position;
  }
}

TEST(DisplayLayout, FillsItsPlaceUntilSomeoneChoosesASize) {
  ResultDisplay display = Display();
  const std::string melody = test::Repeated("288** ", 200);
  EXPECT_EQ(display.ChosenPixelSize(), 0);
  display.SetResult(melody, ResultGroups(melody), true);
  int before = 0;
  for (const double width : {300, 1300, 1600, 3600}) {
    display.SetPlace(width, 500);
    EXPECT_GE(display.PixelSize(), before);
    before = display.PixelSize();
    const auto lines = 1 + std::ranges::count(display.shown().text, '\n');
    EXPECT_TRUE(before == 20 || static_cast<double>(lines) * before * 1.2 <= 500) << width;
  }
  EXPECT_GE(before, 30);
  EXPECT_TRUE(display.SetPixelSize(99));
  EXPECT_FALSE(display.SetPlace(3600, 500));
  EXPECT_EQ(display.ChosenPixelSize(), 40);
}

}  // namespace tonadex::app::display_layout_test
