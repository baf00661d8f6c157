#include <gtest/gtest.h>

#include "app/form1.h"
#include "core/melody_file.h"
#include "core/windows1252.h"
#include "tests/core/test_melody.h"
#include "tests/midi/smf_bytes.h"
#include "tests/support/test_program.h"

namespace tonadex::app::midi_page_test {

using namespace core::literals;

// Chords in the first voice, drums in the second, four bars of a scale in the third.
std::string ThreeVoices() {
  std::vector<midi::SmfNote> chords, drums, tune;
  for (std::uint32_t beat = 0; beat < 16; ++beat) {
    const std::uint32_t at = beat * 48;
    for (const int key : {36, 43}) {
      chords.push_back({at, at + 48, static_cast<std::uint8_t>(key), 0, 64});
    }
    drums.push_back({at, at + 12, 40, 9, 64});
    tune.push_back({at, at + 48, static_cast<std::uint8_t>(60 + 2 * (beat % 4)), 1, 64});
  }
  return test::SmfOf({chords, drums, tune}, 48);
}

struct MidiPageTest : testing::Test {
  void Open(const std::string& bytes) {
    test.program.gPhoneModel = "3210,3310,3330,3390,8250";
    form.Form_Load();
    form.cmdinicio_Click();
    form.OpenMidiFile(bytes, "vals.mid");
    form.Refresh();
  }

  test::TestProgram test;
  Form1 form{test.program};
};

TEST_F(MidiPageTest, MakesTheMelodyThatIsChosen) {
  Open(ThreeVoices());
  EXPECT_EQ(form.paginaactual, kMidiPage);
  EXPECT_EQ(form.midiVoices.rows.size(), 3u);
  EXPECT_EQ(form.midiVoices.listIndex, 2) << "the tune is guessed";
  EXPECT_EQ(form.midiNotes.text, "50") << "the phone's";
  EXPECT_EQ(form.midiText.text, "vals:d=4,o=5,b=120:c,d,e,f#,c,d,e,f#,c,d,e,f#,c,d,e,f#");
  form.midiBar.text = "2";
  form.midiNotes.text = "7";
  form.midiChoice_Change();
  EXPECT_EQ(form.midiText.text, "vals:d=4,o=5,b=120:c,d,e,f#");
  EXPECT_EQ(form.midiDrawing.notes.size(), 4u);
  EXPECT_EQ(form.midiRemarks.text, u8"Acaba en el compás 2 de 4: no caben más notas."_w);
  form.midiBar.text = "9";
  form.midiChoice_Change();
  form.Refresh();
  EXPECT_FALSE(form.saveMidi.enabled || form.useMidi.enabled || form.listenMidi.enabled);
  // The chords, within the phone's octaves or in the file's.
  form.midiVoices.Select(0);
  form.midiVoices_Click();
  EXPECT_EQ(form.midiText.text.substr(0, 23), "vals:d=4,o=5,b=120:g,g,");
  form.filesOctaves_Click();
  EXPECT_EQ(form.midiText.text.substr(0, 23), "vals:d=4,o=3,b=120:g,g,");
}

TEST_F(MidiPageTest, ShowsEveryVoiceAndChoosesByAClick) {
  Open(ThreeVoices());
  for (const int voice : {1, 0, 2}) {
    const Picture picture = form.MidiVoicesPicture(600, 200);
    EXPECT_GE(picture.size(), 3 * 16u) << "notes are told apart";
    const Shape* row = nullptr;
    for (const Shape& shape : picture) {
      EXPECT_TRUE(shape.box.x >= 0 && shape.box.y >= 0 && shape.box.right() <= 600 &&
                  shape.box.bottom() <= 200);
      row = shape.hit == voice ? &shape : row;
    }
    ASSERT_NE(row, nullptr);
    form.midiVoicesView.value = HitAt(picture, row->box.x + 1, row->box.bottom() - 1);
    form.midiVoicesView_Click();
    EXPECT_EQ(form.midiVoices.listIndex, voice);
  }
  form.midiVoicesView.value = HitAt(form.MidiVoicesPicture(600, 200), -1, 9);
  form.midiVoicesView_Click();
  EXPECT_EQ(form.midiVoices.listIndex, 2) << "a click beside";
}

TEST_F(MidiPageTest, TheMelodyGoesIntoTheBoxOrTheRepertoire) {
  Open(ThreeVoices());
  const std::string text = form.midiText.text;
  form.listenMidi_Click();
  EXPECT_FALSE(test.sequencer.commands.empty());
  form.useMidi_Click();
  EXPECT_EQ(form.txtrtttlsube.text, text);
  EXPECT_EQ(form.paginaactual, kStartPage);
  form.OpenMidiFile(ThreeVoices(), "vals.mid");
  form.saveMidi_Click();
  EXPECT_EQ(form.paginaactual, kRepertoirePage);
  EXPECT_EQ(core::UndoSharpEscape(test.folder.Read("melodias/vals." + std::to_string(text.size()))),
            text + "\r\n");
  test.folder.Write("otro.mid", ThreeVoices());
  const std::filesystem::path file = test.folder / "otro.mid";
  form.FilesDropped({&file, 1});
  EXPECT_EQ(form.paginaactual, kMidiPage);
  form.leaveMidi_Click();
  EXPECT_EQ(form.paginaactual, kRepertoirePage);
  EXPECT_TRUE(form.MidiVoicesPicture(600, 200).empty());
}

TEST_F(MidiPageTest, SaysWhereAFileIsDamaged) {
  Open(ThreeVoices().substr(0, 60));
  EXPECT_EQ(form.paginaactual, kStartPage);
  form.OpenMidiFile(test::SmfOf({{}}, 48), "mudo.mid");
  ASSERT_EQ(test.boxes.messages.size(), 2u);
  EXPECT_EQ(test::BoxText(test.boxes.messages[0]).substr(0, 79),
            "!No se ha podido abrir la melodía: el fichero MIDI está dañado en la pista 1");
  EXPECT_EQ(test::BoxText(test.boxes.messages[1]),
            "!No se ha podido abrir la melodía: el fichero MIDI no tiene ninguna nota.");
}

}  // namespace tonadex::app::midi_page_test
