#include "midi/playback.h"

#include <gtest/gtest.h>

#include "midi/mMidiLibOut.h"
#include "tests/core/test_melody.h"
#include "tests/support/fakes.h"
#include "tests/support/temp_folder.h"

namespace tonadex::midi {
namespace {

// Records message boxes and sequencer commands in order.
class Stage : public core::MessageSink {
 public:
  void Show(const core::Message& message) override {
    sequencer.commands.push_back((message.icon == core::Icon::kInformation ? "i[" : "[") +
                                 message.title + "]" + message.text);
  }
  std::vector<std::string> Play(core::RTTTLMelody& melody) {
    const core::ScopedMessageSink scope(*this);
    sequencer.commands.clear();
    PlayMelody(melody, sequencer);
    return sequencer.commands;
  }

  test::FakeSequencer sequencer;
  test::TempFolder folder;
};

TEST(PlayMelody, PlaysWhileItsBoxIsUp) {
  Stage stage;
  stage.sequencer.result = 275;  // error numbers of the sequencer are ignored
  core::RTTTLMelody melody = test::MelodyOf("Vals:d=4,o=5,b=63:c,");
  melody.FileName = "mine.mid";
  melody.TempFolder = stage.folder.path().string() + "/";
  const std::string file = melody.TempFolder + "rtlTmpFile.mid";
  const std::vector<std::string> want = {
      "close mR2M", "open " + file + " type sequencer alias mR2M", "play mR2M notify",
      "i[Reproduciendo]Reproduciendo melodia: Vals", "close mR2M"};
  EXPECT_EQ(stage.Play(melody), want);
  EXPECT_EQ(stage.Play(melody), want) << "and again over the file of the first time";
  EXPECT_EQ(melody.FileName, "mine.mid");
  const std::string bytes = stage.folder.Read("rtlTmpFile.mid");
  EXPECT_EQ(test::Hex(bytes.substr(bytes.size() - 12)), "00 90 3C 64 13 80 3C 00 00 FF 2F 00");
}

// Only playback inserts the gap and selects the beep; a phone's file has neither.
TEST(PlayMelody, EqualNeighboursAreApartAndTheVoiceIsChosen) {
  core::RTTTLMelody melody = test::MelodyOf("x:d=4,o=5,b=63:c,c,p,c,d,64d,d");
  ASSERT_EQ(core::ParseRTTTL(melody), core::kParsed);
  const std::string phone = MidiNoteEvents(melody);
  EXPECT_EQ(test::Hex(phone.substr(0, 16)), "00 90 3C 64 13 80 3C 00 00 90 3C 64 13 80 3C 00");
  EXPECT_EQ(test::Hex(MidiNoteEvents(melody, Repeats::kApart)),
            "00 90 3C 64 12 80 3C 00 01 90 3C 64 13 80 3C 00 13 90 3C 64 13 80 3C 00 "
            "00 90 3E 64 12 80 3E 00 01 90 3E 64 01 80 3E 00 00 90 3E 64 13 80 3E 00");
  const std::string beep = PlayedBytes(melody, Voice::kBeep);
  EXPECT_NE(beep.find("\xC0\x50"), std::string::npos);
  EXPECT_EQ(PlayedBytes(melody, Voice::kInstrument).size(), MidiFileBytes(melody).size());
  EXPECT_NE(MidiFileBytes(melody).find(phone), std::string::npos);
}

TEST(PlayMelody, ReportsABadNoteAndPlaysTheRest) {
  Stage stage;
  core::RTTTLMelody melody = test::MelodyOf("x:d=4,o=5,b=63:c,8,e");
  melody.TempFolder = stage.folder.path().string() + "/";
  const std::vector<std::string> steps = stage.Play(melody);
  ASSERT_EQ(steps.size(), 6u);
  EXPECT_TRUE(steps.front().starts_with("[Tonadex]Error encontrado al separar la nota #2"));
  const std::string bytes = stage.folder.Read("rtlTmpFile.mid");
  EXPECT_EQ(test::Hex(bytes.substr(bytes.size() - 28)),
            "00 90 3C 64 13 80 3C 00 00 90 60 64 0A 80 60 00 00 90 40 64 13 80 40 00 00 FF 2F 00");
}

TEST(PlayMelody, NamesTheFileThatItCannotWrite) {
  Stage stage;
  core::RTTTLMelody melody = test::MelodyOf("c");
  melody.TempFolder = stage.folder.path().string() + "/none/";
  const std::string file = melody.TempFolder + "rtlTmpFile.mid";
  EXPECT_EQ(stage.Play(melody),
            std::vector{"[Tonadex]No se pudo crear el archivo temporal.\r\nPor favor, borra el "
                        "siguiente fichero y vuelve a intentarlo:\r\n" +
                        file});
  EXPECT_EQ(melody.FileName, file) << "kept on a failure";
}

}  // namespace
}  // namespace tonadex::midi
