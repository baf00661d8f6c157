#include "app/session_state.h"

#include <gtest/gtest.h>

#include "app/form1.h"
#include "core/windows1252.h"
#include "tests/support/test_program.h"

namespace tonadex::app::session_state_test {

using namespace core::literals;

// The first window is not closed, as after a kill: the second one gets only the file.
TEST(SessionState, DraftsSurviveWhateverEndsTheProgram) {
  const std::string text(u8"Ñandú \"uno\"\r\n\\n=dos; €\r\n"_w);
  test::TestProgram test;
  Form1 killed(test.program);
  killed.Refresh();
  EXPECT_FALSE(killed.saveTimer.enabled) << "nothing has changed";
  killed.txtrtttlsube.text = text;
  killed.txtmelodiacompo.text = "8c1 9";
  killed.txtcompoTempo.text = "99";
  killed.txtcomponombremelodia.text = " a";
  killed.textresultado.value = 24;
  killed.windowPlace = {{-5, 7, 950, 650}, true};
  killed.Refresh();
  ASSERT_TRUE(killed.saveTimer.enabled);
  EXPECT_LE(killed.saveTimer.interval, 2000U);
  killed.saveTimer_Timer();
  killed.Refresh();
  EXPECT_FALSE(killed.saveTimer.enabled);

  const Form1 next(test.program);
  EXPECT_EQ(next.txtrtttlsube.text, text);
  EXPECT_EQ(next.rtttlCheck.verdict, Verdict::kBad);
  EXPECT_EQ(next.txtmelodiacompo.text, "8c1 9");
  EXPECT_NE(next.composerCheck, killed.composerCheck) << "checked anew";
  EXPECT_EQ(next.txtcompoTempo.text, "99");
  EXPECT_EQ(next.txtcomponombremelodia.text, " a");
  EXPECT_EQ(next.textresultado.value, 24);
  EXPECT_EQ(next.windowPlace, killed.windowPlace);
}

TEST(SessionState, ADamagedFileGivesTheFirstStart) {
  for (const std::string_view bytes :
       {"\xFF\xFErtttl=x", "rtttl", "rtttl=a\\", "compositor.tempo=\\x\n=\n\n", "ventana=1 2 3 4",
        "ventana=1 2 -3 4 0", "ventana=1 2 99999999999 4 0", "ventana=1 2 0 0 0x",
        "resultado.letra=9999", "resultado.letra=-1"}) {
    SCOPED_TRACE(bytes);
    test::TestProgram test;
    test.folder.Write("estado.ini", bytes);
    Form1 form(test.program);
    EXPECT_EQ(form.txtrtttlsube.text, "");
    EXPECT_EQ(form.txtcompoTempo.text, "125");
    EXPECT_EQ(form.textresultado.value, 0);
    EXPECT_EQ(form.windowPlace, WindowPlace{});
  }
}

TEST(SessionState, WhatOtherVersionsKeepStaysAndNothingToWriteToIsNoFault) {
  test::TestProgram test;
  test.folder.Write("estado.ini", "futuro=a\\r\\\\b\r\nrtttl=x\r\n");
  {
    Form1 form(test.program);
    EXPECT_EQ(form.txtrtttlsube.text, "x");
    form.txtcomponombremelodia.text = "y";
    form.Form_QueryUnload();
    const std::string saved = test.folder.Read("estado.ini");
    EXPECT_NE(saved.find("futuro=a\\r\\\\b\n"), saved.npos);
    EXPECT_EQ(ReadState(StateBytes(ReadState(saved))), ReadState(saved));
    std::filesystem::remove(test.folder / "estado.ini");
    std::filesystem::create_directory(test.folder / "estado.ini");  // cannot be replaced
    form.txtcomponombremelodia.text = "z";
    form.saveTimer_Timer();
    form.Refresh();
    EXPECT_FALSE(form.saveTimer.enabled) << "not again and again";
  }
  EXPECT_TRUE(test.boxes.messages.empty());
}

TEST(SessionState, AWindowComesBackToAScreen) {
  const Rect screens[] = {{0, 30, 1000, 700}, {1000, 0, 800, 600}};
  constexpr std::pair<Rect, Rect> kPlaces[] = {
      {{50, 50, 600, 400}, {50, 50, 600, 400}},         // unchanged
      {{1100, 50, 600, 400}, {1100, 50, 600, 400}},     // unchanged, on the second screen
      {{5000, -900, 600, 400}, {400, 30, 600, 400}},    // off all screens: moves to the main one
      {{900, 500, 600, 400}, {1000, 200, 600, 400}},    // mostly on the second screen
      {{-300, 10, 3000, 2000}, {0, 30, 1000, 700}},     // larger than the screen
      {{2147483647, 0, 600, 400}, {400, 30, 600, 400}}  // no overflow
  };
  for (const auto& [place, shown] : kPlaces) {
    EXPECT_EQ(OnScreen(place, screens), shown) << place.left;
  }
}

}  // namespace tonadex::app::session_state_test
