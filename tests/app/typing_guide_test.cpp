#include "app/typing_guide.h"

#include <gtest/gtest.h>

#include "tests/core/test_melody.h"

namespace tonadex::app::typing_guide_test {

constexpr std::string_view kModel = " Pulsaciones";
constexpr std::string_view kResult = "1 2 (3)9** 4 5 ";

bool OpenAt(TypingGuide& guide, const std::string& notes, std::string_view model = kModel) {
  return guide.Open(model, kResult, test::ParsedMelody(notes));
}

// "1 [2] (3)9** 4 5, 2 de 5".
std::string Shown(const TypingGuide& guide) {
  std::string shown;
  for (int offset = -1; offset <= kGroupsAhead; ++offset) {
    if (const phones::TypingStep* step = guide.Group(offset)) {
      shown += offset == 0 ? "[" + step->group + "] " : step->group + " ";
    }
  }
  return shown + guide.Position();
}

TEST(TypingGuide, LeadsFromGroupToGroup) {
  TypingGuide guide;
  EXPECT_FALSE(guide.Move(GuideMove::kLast) || guide.Move(GuideMove::kNext));
  EXPECT_EQ(Shown(guide), "");
  ASSERT_TRUE(OpenAt(guide, "c,d,e.6,f,g"));
  EXPECT_EQ(Shown(guide), "[1] 2 (3)9** 4 1 de 5");
  constexpr std::tuple<GuideMove, bool, std::string_view> kMoves[] = {
      {GuideMove::kPrevious, false, "[1] 2 (3)9** 4 1 de 5"},
      {GuideMove::kNext, true, "1 [2] (3)9** 4 5 2 de 5"},
      {GuideMove::kLast, true, "4 [5] 5 de 5"},
      {GuideMove::kNext, false, "4 [5] 5 de 5"},
      {GuideMove::kPrevious, true, "(3)9** [4] 5 4 de 5"},
      {GuideMove::kFirst, true, "[1] 2 (3)9** 4 1 de 5"}};
  for (const auto& [move, changed, shown] : kMoves) {
    EXPECT_EQ(guide.Move(move), changed) << shown;
    EXPECT_EQ(Shown(guide), shown);
  }
  EXPECT_DOUBLE_EQ(guide.Fraction(), 0.2);
  guide.GoTo(3);
  EXPECT_EQ(guide.DrawnNote(MelodyDrawing("x:d=4,o=5,b=125:c,d,e.6,f,g")), 3);
  EXPECT_EQ(guide.DrawnNote(MelodyDrawing("x:d=4,o=5,b=125:c,x,e.6,f,g")), 2);
  EXPECT_EQ(guide.DrawnNote(MelodyDrawing("x:d=4,o=5,b=125:c,d,e.6,x,g")), -1);
  EXPECT_FALSE(OpenAt(guide, "c", " Compositor"));
  EXPECT_EQ(Shown(guide), "");
  EXPECT_EQ(guide.keypad(), nullptr);
}

TEST(TypingGuide, KeepsThePlaceOfEachMelodyAndPhone) {
  TypingGuide guide;
  OpenAt(guide, "c");
  guide.GoTo(3);
  EXPECT_TRUE(OpenAt(guide, "d"));
  EXPECT_EQ(guide.at(), 0u);
  guide.GoTo(2);
  OpenAt(guide, "c", " Pulsaciones tipo 1");
  EXPECT_EQ(guide.at(), 0u);
  OpenAt(guide, "c");
  EXPECT_EQ(guide.at(), 3u);
  OpenAt(guide, "d");
  EXPECT_EQ(guide.at(), 2u);
  const auto openOthers = [&guide](std::size_t count) {
    for (std::size_t i = 1; i <= count; ++i) {
      OpenAt(guide, "c" + test::Repeated(",c", static_cast<int>(i)));
    }
  };
  openOthers(kKeptPlaces - 1);
  OpenAt(guide, "d");
  EXPECT_EQ(guide.at(), 2u) << "the last ones are kept";
  openOthers(kKeptPlaces);
  OpenAt(guide, "d");
  EXPECT_EQ(guide.at(), 0u) << "no more than those";
}

// During one repetition every key lights up as often, and as long, as it must be pressed.
TEST(LitAt, PressesOneKeyAfterTheOther) {
  const std::vector<phones::KeyPress> keys = {{'3', 1, true}, {'9'}, {'*', 2}};
  std::string seen;
  int down = 0;
  bool was = false;
  double ms = 0;
  for (const phones::KeyPress* press = keys.data(); press != nullptr || ms == 0; ++ms) {
    const LitKey lit = LitAt(keys, ms);
    press = lit.press;
    down += lit.down ? 1 : 0;
    if (lit.down && !was) {
      seen += lit.press->key;
    }
    if (!lit.down && was) {
      seen += down == 3000 ? "held " : down > 200 && down < 1000 ? " " : "?";
      down = 0;
    }
    was = lit.down;
  }
  EXPECT_EQ(seen, "3held 9 * * ");
  for (; LitAt(keys, ms).press == nullptr; ++ms) {
    ASSERT_LT(ms, 60'000) << "never again";
  }
  EXPECT_EQ(LitAt(keys, ms).press, keys.data());
  EXPECT_EQ(LitAt({}, 5).press, nullptr);
}

}  // namespace tonadex::app::typing_guide_test
