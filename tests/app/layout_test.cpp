#include "app/layout.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <vector>

#include "app/form1.h"
#include "tests/midi/smf_bytes.h"
#include "tests/support/test_program.h"

namespace tonadex::app::layout_test {

// A fake toolkit with characters of 8 by 16 pixels, multiplied by `times`: labels wrap, buttons and
// text lines are 36 pixels high.
Size Letters(const Form1& form, Control Form1::*member, int width, int times) {
  const Look look = InfoOf(member).look;
  const int words = 8 * times * static_cast<int>((form.*member).caption.size());
  if (look == Look::kLabel) {
    return {words, 16 * times * (1 + words / std::max(width, 1))};
  }
  return look <= Look::kMark ? Size{words + 40, 20 + 16 * times} : Size{0, 20 + 16 * times};
}

bool Overlap(const Rect& a, const Rect& b) {
  return a.left < b.left + b.width && b.left < a.left + a.width && a.top < b.top + b.height &&
         b.top < a.top + a.height;
}

struct LayoutTest : testing::Test {
  // `height` 0: the height that the page needs, minus `missing`.
  std::vector<Placed> PlaceIn(int width, int height, double scale = 1, int times = 1,
                              int missing = 0, int scrolled = 0) {
    form.Refresh();
    tree = WindowLayout(PageLayout(form.paginaactual, static_cast<int>(width / scale)));
    const auto measure = [this, times](Control Form1::*member, int wide) {
      return Letters(form, member, wide, times);
    };
    const int needed = HeightFor(form, tree, width, scale, measure);
    EXPECT_TRUE(height == 0 || needed <= height) << needed;
    return Place(form, tree, {0, 0, width, height == 0 ? needed - missing : height}, scale, measure,
                 scrolled);
  }
  Rect Of(Control Form1::*member, const std::vector<Placed>& places) {
    return std::ranges::find_if(
               places, [&](const Placed& placed) { return placed.part->control == member; })
        ->rect;
  }
  LayoutTest() { form.Form_Load(); }
  void Enter(std::int16_t page) {
    if (page == kMidiPage) {
      form.OpenMidiFile(test::SmfOf({{{0, 48, 60, 0, 64}}}, 48), "uno.mid");
    }
    for (const ControlInfo& info : Form1::Rows()) {
      if (info.leadsTo == page && info.look == Look::kNavigation) {
        (form.*info.on.handler)();
      }
    }
  }

  test::TestProgram test;
  Form1 form{test.program};
  Part tree = Column({});
};

TEST_F(LayoutTest, EachVisibleControlHasItsOwnPlaceInTheWindow) {
  for (const Page& page : Pages()) {
    for (const auto& [width, height, scale, times] :
         {std::tuple(900, 600, 1.0, 1),
          {1600, 1000, 1.0, 1},
          {1800, 1200, 2.0, 2},
          {1280, 0, 2.0, 2}}) {  // 0: the height that the page needs
      SCOPED_TRACE(testing::Message() << page.number << " at " << width);
      Enter(page.number);
      std::vector<Placed> controls;
      for (const Placed& placed : PlaceIn(width, height, scale, times)) {
        const Rect& rect = placed.rect;
        EXPECT_TRUE(rect.left >= 0 && rect.top >= 0 && rect.left + rect.width <= width &&
                    (rect.top + rect.height <= height || height == 0) && rect.width >= 0);
        if (placed.part->control != nullptr) {
          const auto name = InfoOf(placed.part->control).name;
          EXPECT_GT(rect.height, 0) << name;
          EXPECT_LE(rect.width, placed.part->mostWidth * scale) << name;
          for (const Placed& other : controls) {
            EXPECT_FALSE(Overlap(rect, other.rect)) << name;
          }
          controls.push_back(placed);
        }
      }
      for (const ControlInfo& info : Controls()) {
        const bool shown =
            (form.*info.member).Shows() && info.look != Look::kTimer && info.look != Look::kStorage;
        const bool placed = std::ranges::any_of(
            controls, [&info](const Placed& each) { return each.part->control == info.member; });
        EXPECT_EQ(placed, shown) << info.name;
      }
    }
  }
}

TEST_F(LayoutTest, RoomIsSharedByWeightWithinTheLimits) {
  Enter(kOptionsPage);
  const auto places = PlaceIn(1600, 1000);
  const Rect makes = Of(&Form1::cmbmarcas, places), models = Of(&Form1::formatList, places);
  EXPECT_NEAR(makes.left, 1600 - models.left - models.width, 2) << "the card is in the middle";
  EXPECT_NEAR(models.width * 2, makes.width * 3, 6);
  EXPECT_EQ(makes.height, models.height);
  const Rect words = Of(&Form1::soundLabel, places), choice = Of(&Form1::beepChoice, places);
  EXPECT_EQ(words.top - choice.top, (choice.height - words.height) / 2) << "the line's middle";
  Enter(kRepertoirePage);
  // The list grows into the space of a hidden button.
  const int list = Of(&Form1::List1, PlaceIn(1600, 1000)).height;
  test.folder.Write("melodias/vals.20", "Vals:d=4,o=5,b=90:c");
  form.MelodyFolderChanged();
  form.Refresh();
  EXPECT_EQ(Of(&Form1::List1, PlaceIn(1600, 1000)).height, list + 36 + 8);
}

TEST_F(LayoutTest, OnlyThePageScrolls) {
  Enter(kStartPage);
  const auto whole = PlaceIn(900, 0);
  const Rect bar = Of(&Form1::cmdinicio, whole), card = Of(&Form1::phoneCard, whole);
  for (const auto& [scrolled, moved] : {std::pair(0, 0), {30, 30}, {9999, 160}}) {
    SCOPED_TRACE(scrolled);
    const auto places = PlaceIn(900, 0, 1, 1, 160, scrolled);
    ASSERT_EQ(places.size(), whole.size());
    for (std::size_t i = 0; i < places.size(); ++i) {
      Rect rect = whole[i].rect;
      const bool fixed = places[i].view.top == 0;
      rect.top -= fixed ? 0 : moved;
      EXPECT_EQ(places[i].rect, rect);
    }
    EXPECT_EQ(Of(&Form1::phoneCard, places).top, card.top - moved);
    EXPECT_EQ(Of(&Form1::cmdinicio, places), bar);
  }
}

TEST_F(LayoutTest, TheDisplayIsTheHeartOfItsPage) {
  Enter(kRepertoirePage);
  for (const auto& [width, height, tall, beside] : {std::tuple(900, 600, 200, false),
                                                    {1000, 700, 300, false},
                                                    {1280, 800, 440, true},
                                                    {1920, 1080, 720, true},
                                                    {2560, 1440, 1080, true}}) {
    SCOPED_TRACE(width);
    const auto places = PlaceIn(width, height);
    const Rect display = Of(&Form1::textresultado, places);
    const Rect drawing = Of(&Form1::repertoireView, places);
    EXPECT_GE(display.height, tall);
    EXPECT_GE(display.width, 500);
    EXPECT_LE(display.width, look::kMeasure);
    EXPECT_EQ(drawing.left > display.left + display.width, beside);
    EXPECT_EQ(drawing.top > display.top + display.height, !beside);
    EXPECT_GE(drawing.height, look::kLowestView);
  }
}

}  // namespace tonadex::app::layout_test
