#include <gtest/gtest.h>

#include <string>
#include <string_view>
#include <vector>

#include "app/composer_keys.h"
#include "app/form1.h"
#include "core/windows1252.h"
#include "tests/core/table.h"
#include "tests/support/test_program.h"

namespace tonadex::app {
namespace {

using namespace core::literals;
using platform::Icon;
using platform::Message;

class Form1Composer : public testing::Test {
 protected:
  void SetUp() override {
    form.Form_Load();
    form.cmdinicio_Click();
    form.txtcomponombremelodia.text = "Tema";
    form.txtcompoTempo.text = "120";
    form.txtmelodiacompo.text = "4c1 8.#d2 4-";
    form.lblMsg.caption = "before";
  }
  std::string Notes(int count) {
    std::string notes;
    for (int i = 0; i < count; ++i) {
      notes += "4c1 ";
    }
    return notes;
  }

  test::TestProgram test;
  Form1 form{test.program};
};

TEST_F(Form1Composer, PlaysWhatItBuilt) {
  form.cmdscuchacumpo_Click();
  EXPECT_EQ(form.melodiasube, "Tema:d=4,o=5,b=120:c,8d#.6,p");
  EXPECT_EQ(form.rtf.text, "c,8d#.6,p");
  EXPECT_EQ(test.program.gMelody.Text, form.melodiasube);
  EXPECT_EQ(
      test.boxes.messages,
      (std::vector<Message>{{"Reproduciendo melodia: Tema", "Reproduciendo", Icon::kInformation}}));
  EXPECT_EQ(form.lblMsg.caption, "");
}

TEST_F(Form1Composer, UploadsWhatItBuilt) {
  test.http.replies = {"", ""};
  form.cmdsubecompo_Click();
  ASSERT_EQ(test.http.urls.size(), 2u);
  EXPECT_EQ(test.http.urls[1],
            "http://servidor/uploadertonos.php?filename=Tema.28&contents="
            "Tema:d=4,o=5,b=120:c,8djuh9hay.6,p");
}

TEST_F(Form1Composer, WarnsBeyondFiftyNotesAndPlays) {
  for (const auto& [notes, warning] :
       {std::pair{50, ""}, {51, "ADVERTENCIA: La melodia tiene mas de 50 notas."}}) {
    form.txtmelodiacompo.text = Notes(notes);
    form.cmdscuchacumpo_Click();
    EXPECT_EQ(form.lblMsg.caption, warning);
  }
  EXPECT_EQ(test.boxes.messages.size(), 2u);
}

struct RefusalCase {
  std::string_view melody, tempo, notes, text, title;
  Icon icon;
};

constexpr std::string_view kMissing = u8"Introduce un nombre de melodía y un tempo."_w;
constexpr RefusalCase kRefusals[] = {
    {"", "120", "4c1", kMissing, "Tonadex", Icon::kNone},
    {"Tema", "1200", "4c1", kMissing, "Tonadex", Icon::kNone},
    {"Tema", "x", "4c1", kMissing, "Tonadex", Icon::kNone},
    {"Te)ma", "120", "???", u8"El nombre de la melodía no puede contener paréntesis"_w,
     u8"Nombre no válido"_w, Icon::kExclamation},
    {"Tema", "120", "4c1 4x1",
     u8"La melodia no se ha subido pues ha habido algunos errores al leer la "
     u8"melodia:\r[CNokia.Convert] Posición 5: no se entiende «4x1»"_w,
     "Errores en la melodia", Icon::kExclamation}};

TEST_F(Form1Composer, RefusesWithBothButtons) {
  for (const RefusalCase& c : kRefusals) {
    for (const auto click : {&Form1::cmdscuchacumpo_Click, &Form1::cmdsubecompo_Click}) {
      form.txtcomponombremelodia.text = c.melody;
      form.txtcompoTempo.text = c.tempo;
      form.txtmelodiacompo.text = c.notes;
      form.lblMsg.caption = "before";
      test.boxes.messages.clear();
      (form.*click)();
      EXPECT_EQ(test.boxes.messages,
                (std::vector<Message>{{std::string(c.text), std::string(c.title), c.icon}}))
          << c.notes;
      EXPECT_EQ(form.lblMsg.caption, "");
      EXPECT_EQ(form.melodiasube, "");
      EXPECT_EQ(form.txtmelodiacompo.text, c.notes);
    }
  }
  EXPECT_TRUE(test.http.urls.empty());
  EXPECT_TRUE(test.sequencer.commands.empty());
}

TEST_F(Form1Composer, PlaysTheRtttlTextAsItStands) {
  form.txtrtttlsube.text = "no melody";
  form.cmdscuchartttl_Click();
  EXPECT_EQ(test.boxes.messages.size(), 2u);  // the parser's report, then the player
  EXPECT_EQ(test.boxes.messages[1].title, "Reproduciendo");
}

TEST_F(Form1Composer, FiltersTheKeysOfTheTempoBox) {
  const auto passing = [this](std::string_view typed) {
    std::string keys;
    for (std::int16_t key = 1; key < 256; ++key) {
      form.txtcompoTempo.text = typed;
      std::int16_t code = key;
      form.txtcompoTempo_KeyPress(code);
      keys += code == key ? std::string(1, static_cast<char>(key)) : "";
    }
    return keys;
  };
  EXPECT_EQ(passing("12"), "\b0123456789");
  EXPECT_EQ(passing("123"), "\b");
  EXPECT_EQ(test.shell.beeps, 244 + 254);
}

TEST_F(Form1Composer, CountsAndDrawsWhileTyping) {
  form.txtmelodiacompo_Change();
  EXPECT_EQ(form.composerDrawing, MelodyDrawing("x:d=4,o=5,b=120:c,8d#.6,p"));
  EXPECT_EQ(form.composerCheck, (Check{Verdict::kGood, "3 de 50 notas"}));
  const std::pair<std::string, Check> typed[] = {
      {Notes(51), {Verdict::kBad, std::string(u8"51 notas: el móvil admite 50."_w)}},
      {"4c1 4x1", {Verdict::kBad, std::string(u8"Posición 5: no se entiende «4x1»."_w)}},
      {"", {Verdict::kNothing, "0 de 50 notas"}}};
  for (const auto& [notes, check] : typed) {
    form.txtmelodiacompo.text = notes;
    form.txtmelodiacompo_Change();
    EXPECT_EQ(form.composerCheck, check);
  }
  EXPECT_TRUE(form.composerDrawing.notes.empty());
  EXPECT_TRUE(test.boxes.messages.empty());
}

// "!" in front of a key holds it.
TEST(PressKey, ActsAsThePhone) {
  for (const test::Row& row : test::Table("Keys")) {
    const std::size_t cursor = row[0].find('^');
    ComposerText text{row[0], cursor};
    text.text.erase(cursor, 1);
    bool held = false;
    for (const char key : row[1]) {
      if (key != '!') {
        text = PressKey(text, std::string_view(&key, 1), held);
      }
      held = key == '!';
    }
    text.text.insert(text.cursor, "^");
    EXPECT_EQ(text.text, row[2]) << row[0] << " " << row[1];
  }
}

}  // namespace
}  // namespace tonadex::app
