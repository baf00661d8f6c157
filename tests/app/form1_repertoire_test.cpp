#include <gtest/gtest.h>

#include <string>
#include <string_view>
#include <vector>

#include "app/form1.h"
#include "core/melody_file.h"
#include "core/runtime_error.h"
#include "core/windows1252.h"
#include "tests/core/table.h"
#include "tests/support/test_program.h"

namespace tonadex::app {
namespace {

using namespace core::literals;
using platform::Icon;
using platform::Message;

constexpr std::string_view kVals = "Vals:d=4,o=5,b=100:c,8cjuh9hay6,p\r\nsecond line\r\n";

class Form1Repertoire : public testing::Test {
 protected:
  // Loads the window, enters the page and selects the first row.
  void Enter() {
    form.Form_Load();
    form.cmdrepertorio_Click();
    form.List1.Select(0);
    form.List1_Click();
  }
  std::string Rows() const {
    std::string text;
    for (const ListRow& row : form.List1.rows) {
      text += row.text + "=" + std::to_string(row.itemData) + ";";
    }
    return text;
  }

  test::TestProgram test;
  Form1 form{test.program};
};

TEST_F(Form1Repertoire, ListsOneRowForEachFile) {
  for (const test::Row& row : test::Table("Files")) {
    std::filesystem::remove_all(test.folder / "melodias");
    test.folder.Write("melodias/" + row[0], row[1]);
    form.cmdbuscar_Click();
    form.cmdrepertorio_Click();
    EXPECT_EQ(Rows(), row[2]) << row[0];
  }
}

// A stem that cannot be found is passed over in the first row alone.
TEST_F(Form1Repertoire, EndsTheListAtTheSecondFileWithoutStem) {
  test.folder.Write("melodias/one.123456", "A:c");
  test.folder.Write("melodias/two.123456", "A:c");
  Enter();
  EXPECT_EQ(Rows(), "A ()=123456;");
}

TEST_F(Form1Repertoire, ListsOnceAndResetsTheMelody) {
  std::filesystem::remove(test.folder / "melodias");
  Enter();
  EXPECT_EQ(Rows(), "");
  EXPECT_TRUE(form.OffersSearch());
  EXPECT_NE(form.EmptySentence(), "");
  test.program.gMelody.Instrument = 1;
  test.folder.Write("melodias/vals.120", kVals);
  form.cmdrepertorio_Click();  // shown already
  EXPECT_EQ(Rows(), "");
  form.cmdbuscar_Click();
  form.cmdrepertorio_Click();
  EXPECT_EQ(Rows(), "Vals (vals)=120;");
  form.cmdbuscar_Click();
  EXPECT_EQ(Rows(), "");
  form.cmdrepertorio_Click();
  EXPECT_EQ(form.List1.listIndex, -1);
  EXPECT_EQ(test.program.gMelody.Instrument, 99);
  EXPECT_EQ(test.program.gMelody.TempFolder, test.shell.tempPath);
  EXPECT_FALSE(form.OffersSearch());
}

TEST_F(Form1Repertoire, ListsTenThousandFiles) {
  for (int i = 0; i < 10'000; ++i) {
    test.folder.Write("melodias/m" + std::to_string(i) + ".9", "M:d=4:c,d");
  }
  Enter();
  EXPECT_EQ(form.List1.rows.size(), 10'000u);
}

TEST_F(Form1Repertoire, PlaysTheSelectedMelody) {
  struct Watch : platform::MessageSink {
    explicit Watch(const Form1& window) : form(window) {}
    void Show(const Message& message) override { shown.emplace_back(message, form.sounding); }
    const Form1& form;
    std::vector<std::pair<Message, Sounding>> shown;
  } watch(form);
  const platform::ScopedMessageSink sink(watch);
  test.folder.Write("melodias/vals.120", kVals);
  Enter();
  form.List1_DblClick();
  EXPECT_EQ(watch.shown, (std::vector<std::pair<Message, Sounding>>{
                             {{"Reproduciendo melodia: Vals", "Reproduciendo", Icon::kInformation},
                              Sounding::kRepertoire}}));
  EXPECT_EQ(form.sounding, Sounding::kNothing);
  const std::string file = test.shell.tempPath + "rtlTmpFile.mid";
  EXPECT_EQ(test.sequencer.commands,
            (std::vector<std::string>{"close mR2M", "open " + file + " type sequencer alias mR2M",
                                      "play mR2M notify", "close mR2M"}));
  EXPECT_EQ(test.folder.Read("temp/rtlTmpFile.mid").substr(0, 4), "MThd");
  EXPECT_EQ(test.program.gMelody.Text, "Vals:d=4,o=5,b=100:c,8c#6,p");
}

TEST_F(Form1Repertoire, DoesNothingWithoutSelectionAndFailsWithoutFile) {
  Enter();
  form.picreproducir_Click();
  form.picconvertir_Click();
  EXPECT_FALSE(form.picimprimir.enabled);
  form.List1.AddRow("Vals (../vals)", 120);
  form.List1.Select(0);
  EXPECT_THROW(form.picreproducir_Click(), core::RunTimeError);
  EXPECT_THROW(form.picconvertir_Click(), core::RunTimeError);
  EXPECT_FALSE(form.picimprimir.enabled);
  EXPECT_TRUE(test.sequencer.commands.empty());
}

TEST_F(Form1Repertoire, ConvertsForThePhone) {
  test.program.gPhoneModel = " RTTTL (cable)";
  test.folder.Write("melodias/vals.120", kVals);
  Enter();
  EXPECT_NE(form.EmptyResultSentence(), "");
  form.picconvertir_Click();
  EXPECT_EQ(form.lbltextresult.caption, "Melodia Vals (vals) para Nokia en formato RTTTL.");
  EXPECT_EQ(form.textresultado.text, "Vals:d=4,o=5,b=100:c,8c#6,p");
  EXPECT_EQ(form.Textavisos.text,
            "Este es el fichero RTTTL que puedes enviar a tu Nokia mediante cable o SMS.");
  EXPECT_EQ(form.texttempo.text, "100");
  EXPECT_TRUE(form.picimprimir.enabled && form.ResultCanBeSaved());
  EXPECT_EQ(form.SuggestedResultName(), "vals.rtttl");
  EXPECT_EQ(form.EmptyResultSentence(), "");
}

TEST_F(Form1Repertoire, AsksWhereToSaveAndKeepsThePageOnCancel) {
  test.program.gPhoneModel = " KWS";
  test.folder.Write("melodias/vals.120", kVals);
  Enter();
  form.textresultado.text = "before";
  form.picconvertir_Click();
  EXPECT_EQ(form.textresultado.text, "before");
  EXPECT_TRUE(form.picimprimir.enabled);
  ASSERT_EQ(test.fileDialogs.asked.size(), 1u);
  EXPECT_EQ(test.fileDialogs.asked[0].lpstrInitialDir, core::TextFromPath(test.folder.path()));
  EXPECT_EQ(test.fileDialogs.asked[0].lpstrTitle, u8"Grabar Melodía kws"_w);
  EXPECT_EQ(test.fileDialogs.asked[0].nFilterIndex, 2);
  test.fileDialogs.answers = {core::TextFromPath(test.folder / "vals.kws")};
  form.picconvertir_Click();
  EXPECT_EQ(form.lbltextresult.caption, "Melodia Vals (vals) para Kyocera (No puede ser mostrada)");
  EXPECT_NE(test.folder.Read("vals.kws"), "(none)");
  EXPECT_FALSE(form.ResultCanBeSaved());
}

TEST_F(Form1Repertoire, PrintsWhatThePageShows) {
  test.program.gPhoneModel = "3210,3310,3330,3390,8250";
  test.folder.Write("melodias/vals.120", kVals);
  test.folder.Write("print.rtf", "{cambiatitulo|cambiatempo|cambiamelodia|cambiamodelo}");
  Enter();
  form.picconvertir_Click();
  form.picimprimir_Click();
  EXPECT_EQ(test.richText.printed,
            std::vector<std::string>{"{Vals (vals)|100|" + form.textresultado.text +
                                     "|Nokia>Compositor.}"});
  test.richText.noPrinter = true;
  EXPECT_THROW(form.picimprimir_Click(), core::RunTimeError);
  std::filesystem::remove(test.folder / "print.rtf");
  EXPECT_THROW(form.picimprimir_Click(), core::RunTimeError);
}

TEST_F(Form1Repertoire, DrawsTheSelectedMelody) {
  test.folder.Write("melodias/vals.120", kVals);
  Enter();
  EXPECT_EQ(form.repertoireDrawing, MelodyDrawing("Vals:d=4,o=5,b=100:c,8c#6,p"));
  std::filesystem::remove(test.folder / "melodias" / "vals.120");
  form.List1_Click();
  EXPECT_TRUE(form.repertoireDrawing.notes.empty());
}

}  // namespace
}  // namespace tonadex::app
