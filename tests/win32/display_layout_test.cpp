#include "shell/win32/display_layout.h"

#include <gtest/gtest.h>

namespace tonadex::test {
namespace {

using shell::DisplayText;
using shell::TextRange;

DisplayText Shown(std::string_view result, bool counted, std::size_t columns) {
  return shell::LayOutDisplay(result, app::ResultGroups(result), counted, columns);
}

struct Case {
  std::string_view name, result;
  bool counted;
  std::size_t columns;
  std::string_view want;
};

constexpr Case kCases[] = {
    {"OneLine", "4c1 8d1 ", false, 20, "4c1 8d1"},
    {"WrapsBetweenGroups", "4c1 8d1 2e1", false, 8, "4c1 8d1\n2e1"},
    {"NumbersTheLines", "22 333 (4) 55", true, 12, "1  22  333\n3  (4)  55"},
    {"BreaksBehindCommasWithoutABlank", "x:d=4:c,d,e", false, 8, "x:d=4:c,\nd,e"},
    {"KeepsTheResultsOwnLines", "BEGIN:X\r\nEND:X\r\n", false, 40, "BEGIN:X\nEND:X"},
    {"BreaksWhatNoLineHolds", "abcdefghij", false, 4, "abcd\nefgh\nij"},
    {"Empty", "", true, 10, ""},
};

TEST(DisplayLayout, TearsNoGroupApart) {
  for (const Case& c : kCases) {
    EXPECT_EQ(Shown(c.result, c.counted, c.columns).text, c.want) << c.name;
  }
}

// Whatever the width, each group gives back exactly its own text, and all of it the whole result.
TEST(DisplayLayout, CopiesTheResultAndNotItsLayout) {
  const std::string result = "22 8* 333 (4) 5555 8 (66) 7";
  const auto groups = app::ResultGroups(result);
  for (std::size_t columns = 1; columns < 40; ++columns) {
    const DisplayText shown = Shown(result, true, columns);
    ASSERT_EQ(shown.groups.size(), groups.size());
    for (std::size_t i = 0; i < groups.size(); ++i) {
      EXPECT_EQ(ShownPart(result, shown, shown.groups[i]), groups[i].text) << columns;
    }
    EXPECT_EQ(ShownPart(result, shown, {0, shown.text.size()}), result) << columns;
    EXPECT_EQ(shown.held.size(), 2U);
    EXPECT_EQ(ShownPart(result, shown, shown.held[0]), "(4)") << columns;
  }
}

}  // namespace
}  // namespace tonadex::test
