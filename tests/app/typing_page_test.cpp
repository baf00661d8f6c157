#include <gtest/gtest.h>

#include <cstdlib>
#include <set>
#include <utility>

#include "app/form1.h"
#include "core/windows1252.h"
#include "files/read.h"
#include "midi/playback.h"
#include "tests/core/test_melody.h"
#include "tests/support/test_program.h"

namespace tonadex::app::typing_page_test {

using namespace core::literals;

struct TypingPageTest : testing::Test {
  // Converts the repertoire's only melody for this model and opens the guide.
  void Teclear(const std::string& notes, const std::string& model = " Pulsaciones") {
    test.folder.Write("melodias/vals.20", "Vals:d=4,o=5,b=60:" + notes);
    test.program.gPhoneModel = model;
    if (form.paginaactual == kRepertoirePage) {
      form.cmdbuscar_Click();
    }
    form.cmdrepertorio_Click();
    form.List1.Select(0);
    form.picconvertir_Click();
    form.Refresh();
    form.teclearButton_Click();
    form.Refresh();
  }
  std::string Step() {
    form.Refresh();
    return form.stepView.text;
  }

  test::TestProgram test;
  Form1 form{test.program};
};

TEST_F(TypingPageTest, IsOfferedForWhatIsTypedAndThenComesFirst) {
  for (const auto& [model, keys] : {std::pair{" Pulsaciones", true},
                                    {"3210,3310,3330,3390,8250", true},
                                    {" RTTTL (cable)", false},
                                    {" Motorola Pulsaciones Tipo 1", true}}) {
    Teclear("c,d,e", model);
    EXPECT_EQ(form.teclearButton.enabled, keys) << model;
    EXPECT_EQ(form.picconvertir.checked, !keys) << model;
    EXPECT_EQ(form.paginaactual == kTypingPage, keys) << model;
    EXPECT_FALSE(form.navbanner.Shows());
    form.leaveGuide_Click();
    EXPECT_EQ(form.stepView.visible, false);
  }
}

TEST_F(TypingPageTest, SaysWhatToPressAndWhatThePhoneShows) {
  Teclear("c,e.6");
  form.nextGroup_Click();
  EXPECT_EQ(Step(), std::string(u8"2 de 2: 3 mantén 3 s, *. mi, negra, con puntillo, octava media. "
                                u8"En la pantalla debe verse: 4.e2. "
                                u8"Es lo último: después, guarda la melodía en el móvil."_w));
  EXPECT_FALSE(form.nextGroup.enabled);
  EXPECT_EQ(form.guideView.listIndex, 1);
}

TEST_F(TypingPageTest, TheKeypadLightsKeyAfterKey) {
  Teclear("c,8e6");
  form.nextGroup_Click();
  std::set<std::string> lit;
  for (int tick = 0; tick < 100; ++tick) {
    const Picture pad = form.KeypadPicture(300, 400);
    for (std::size_t i = 0; i + 2 < pad.size(); ++i) {
      if (pad[i].kind == Shape::Kind::kFilled && pad[i].ink == Ink::kAccent) {
        lit.insert(pad[i + 2].text);  // the key's label follows its frame
      }
    }
    form.keyTimer_Timer();
  }
  EXPECT_EQ(lit, (std::set<std::string>{"3", "8", "*"}));
}

// Everything is within its picture in the smallest window and in a large one, and the group can be
// read from half a metre away.
TEST_F(TypingPageTest, ThePicturesHoldAllOfEveryStep) {
  constexpr double kLarge = 64;
  for (const std::string model : {" Pulsaciones", " Pulsaciones tipo 1", " Pulsaciones tipo 2",
                                  " Motorola Pulsaciones Tipo 1"}) {
    Teclear("c,d.,8e6,16p,f#7,2g", model);
    const std::size_t groups = ResultGroups(form.textresultado.text).size();
    for (std::size_t group = 0; group < groups; ++group) {
      for (const auto& [width, height] :
           {std::pair{300.0, 270.0}, {520.0, 270.0}, {1400.0, 700.0}}) {
        double largest = 0;
        bool saysLast = false;
        for (const Picture& picture :
             {form.StepPicture(width, height), form.KeypadPicture(width, height)}) {
          EXPECT_FALSE(picture.empty());
          for (const Shape& shape : picture) {
            EXPECT_TRUE(shape.box.x >= 0 && shape.box.y >= 0 && shape.box.right() <= width + 0.1 &&
                        shape.box.bottom() <= height + 0.1)
                << model << ": " << shape.text;
            largest = std::max(largest, shape.size);
            saysLast = saysLast || shape.text.starts_with("Es lo ");
          }
        }
        EXPECT_GE(largest, kLarge);
        EXPECT_EQ(saysLast, group + 1 == groups);
      }
      form.nextGroup_Click();
    }
    form.leaveGuide_Click();
  }
}

TEST_F(TypingPageTest, GoesOnByItselfAtTheChosenPaceToTheEnd) {
  Teclear("c,d,e");
  for (int i = 0; i < 20; ++i) {
    form.fasterButton_Click();
  }
  form.goOnButton_Click();
  std::string shown;
  for (int second = 0; second < 3; ++second) {
    for (std::uint32_t ms = 0; ms < 1000; ms += form.keyTimer.interval) {
      form.keyTimer_Timer();
    }
    shown += Step().substr(0, 2);
  }
  EXPECT_EQ(shown, "2 3 3 ");
  form.leaveGuide_Click();
  EXPECT_FALSE(form.keyTimer.enabled);
}

TEST_F(TypingPageTest, EachNoteSoundsWhileItIsShownAndThisIsRemembered) {
  Teclear("c,p,8e.6");
  test.sequencer.commands.clear();
  form.nextGroup_Click();
  form.firstGroup_Click();
  EXPECT_TRUE(test.sequencer.commands.empty()) << "nobody asked for it";
  const auto sounds = [this](const std::string& notes) {
    const auto played = files::ReadWhole(test.folder / "temp/rtlTmpFile.mid");
    core::RTTTLMelody melody;
    core::InitMelody(melody, {});
    melody.Text = "x:d=4,o=5,b=60:" + notes;
    EXPECT_EQ(core::ParseRTTTL(melody), core::kParsed);
    EXPECT_EQ(played, midi::PlayedBytes(melody, test.program.voice)) << notes;
    EXPECT_EQ(test.sequencer.commands.back(), "play mR2M notify");
  };
  form.soundNotes_Click();
  sounds("c");
  form.nextGroup_Click();
  EXPECT_EQ(test.sequencer.commands.back(), "close mR2M") << "a pause";
  form.nextGroup_Click();
  sounds("8e.6");
  form.leaveGuide_Click();
  EXPECT_EQ(test.sequencer.commands.back(), "close mR2M");
  Teclear("2d.6,c", "A200,A288,Q300");
  form.nextGroup_Click();
  EXPECT_EQ(test.sequencer.commands.back(), "close mR2M") << "a dot that is a group of its own";
  EXPECT_TRUE(test.boxes.messages.empty());
  form.saveTimer_Timer();
  EXPECT_EQ(Form1(test.program).soundNotes.value, 1);
}

#ifndef _WIN32  // no program that reads PDF is available there
// The text of a PDF, extracted by pdftotext.
std::string PdfText(const std::filesystem::path& file) {
  const std::string text = file.string() + ".txt";
  EXPECT_EQ(std::system(("pdftotext -raw '" + file.string() + "' '" + text + "'").c_str()), 0);
  return files::ReadBytes(text);
}

TEST_F(TypingPageTest, TheSheetIsSavedUnderTheMelodysNameAndOpened) {
  Teclear("c,d.,8e6,16p,f#7,2g" + test::Repeated(",8c6,4b", 100));
  EXPECT_FALSE(form.openSheet.visible);
  form.saveSheet_Click();  // cancelled
  Step();
  EXPECT_FALSE(form.openSheet.visible);
  const std::filesystem::path file = test.folder / u8"señal.pdf";
  test.fileDialogs.answers = {files::TextFromPath(test.folder / u8"señal")};
  form.saveSheet_Click();
  Step();
  EXPECT_EQ(test.fileDialogs.proposed.back(), "vals.pdf");
  EXPECT_TRUE(form.openSheet.visible && form.showSheet.visible);
  const std::string text = PdfText(file);
  EXPECT_TRUE(text.starts_with("Vals, para Nokia")) << text;
  EXPECT_NE(text.find("más corta"), std::string::npos) << text;
  const std::string_view keys = core::Trim(form.textresultado.text);
  const std::string last = "206" + std::string(keys.substr(keys.rfind(' '))) + "\n";
  EXPECT_NE(text.find(last), std::string::npos) << last << " in " << text;
  form.openSheet_Click();
  form.showSheet_Click();
  EXPECT_EQ(test.shell.opened, (std::vector{file, file / "."}));
  form.printSheet_Click();
  EXPECT_TRUE(test.richText.printed.back().starts_with("vals: Vals, para Nokia"));
}
#endif

}  // namespace tonadex::app::typing_page_test
