// MIDI files written and played.
#include "midi/mMidiLibOut.h"

#include <gtest/gtest.h>

#include "formats/pitch.h"
#include "midi/playback.h"
#include "tests/core/table.h"
#include "tests/core/test_melody.h"
#include "tests/support/fakes.h"
#include "tests/support/temp_folder.h"

namespace tonadex::midi::midi_file_test {

using namespace test;

TEST(MidiFileBytes, HoldsTwoChunksAndNothingElse) {
  core::RTTTLMelody melody = ParsedMelody("x:d=4,o=5,b=63:c");
  melody.Credits = "(c)\r\n\xF1";
  melody.TrackName = "";
  melody.Instrument = 99;
  EXPECT_EQ(Hex(MidiFileBytes(melody)),
            "4D 54 68 64 00 00 00 06 00 00 00 01 00 65 "  // format 0, one track, division 101
            "4D 54 72 6B 00 00 00 28 "
            "00 FF 02 06 28 63 29 0D 0A F1 "
            "00 FF 03 00 "
            "00 B0 07 7F "
            "00 FF 51 03 4C 4B 40 "
            "00 C0 63 "
            "00 90 3C 64 13 80 3C 00 "
            "00 FF 2F 00");
}

TEST(MidiNoteEvents, CountsPausesAndWrapsDeltas) {
  ExpectRows("NoteEvents", [](auto& row) { return Hex(MidiNoteEvents(ParsedMelody(row[0]))); });
}

TEST(NoteTicks, EveryDurationPlainAndDotted) {
  std::string ticks;
  for (const double duration : {1., 2., 4., 8., 16., 32., 64., 128., 3., 0., 4.5, -4.}) {
    ticks += std::to_string(NoteTicks(duration, false)) + "/" +
             std::to_string(NoteTicks(duration, true)) + " ";
  }
  EXPECT_EQ(ticks, "77/115 38/58 19/29 10/14 5/7 2/4 1/2 0/0 0/0 0/0 0/0 0/0 ");
}

TEST(NoteNumber, EveryPitchInEveryOctave) {
  std::int16_t number = 0;
  for (std::int16_t octave = 0; octave <= 10; ++octave) {
    for (const std::string_view pitch : formats::kPitches) {
      EXPECT_EQ(NoteNumber(pitch, static_cast<std::int16_t>(octave - 1)), number++) << pitch;
    }
  }
  EXPECT_EQ(NoteNumber("p", 4), kPauseNumber);
  EXPECT_EQ(NoteNumber("C#", 4), 60) << "letters are lower case";
  EXPECT_EQ(NoteNumber("e#", 4), 60);
  EXPECT_EQ(ErrorOf([] { NoteNumber("c", 3000); }), 6);
}

TEST(MidiDivision, FollowsTheTempo) {
  ExpectRows("Divisions",
             [](const Row& row) { return NumberOrError([&] { return MidiDivision(row[0]); }); });
}

TEST(MidiBytes, OneByteEach) {
  EXPECT_EQ(Hex(WriteVarLen(127) + WriteVarLen(128) + WriteVarLen(154)), "7F 00 1A");
  EXPECT_EQ(Hex(LongToBytes(0x12345678) + LongToBytes(-2)), "12 34 56 78 FF FF FF FE");
  EXPECT_EQ(Hex(WordToBytes(0x12345) + WordToBytes(-1)), "23 45 FF FF");
  EXPECT_EQ(Hex(MidiEvent(5, 0x90, 3, PairArray(60, 255))), "05 93 3C FF");
  EXPECT_EQ(MidiCreditsEvent(std::string(255, 'x')).size(), 259u);
  EXPECT_EQ(ErrorOf([] { MidiTrackNameEvent(std::string(256, 'x')); }), 5);
  EXPECT_EQ(ErrorOf([] { MidiCreditsEvent(std::string(256, 'x')); }), 5);
}

TEST(WriteMidiFile, AnyFailureIsMinusOne) {
  const TempFolder folder;
  const auto write = [&](std::string_view text, std::string_view name, std::int16_t instrument) {
    core::RTTTLMelody melody = ParsedMelody(text);
    melody.FileName = (folder / name).string();
    melody.Instrument = instrument;
    return WriteMidiFile(melody);
  };
  folder.Write("a.mid", Repeated("old", 100));
  EXPECT_EQ(write("p", "a.mid", 0), kMidiWritten);
  EXPECT_EQ(folder.Read("a.mid").size(), 14u + 8 + 4 + 4 + 4 + 7 + 3 + 4) << "truncated";
  EXPECT_EQ(write("p", "none/a.mid", 0), kMidiFailed);
  EXPECT_EQ(write("p", "", 0), kMidiFailed) << "a folder";
  EXPECT_EQ(write("p", "a.mid", 256), kMidiFailed);
  for (const char* text :
       {"x:d=k,b=9:p", "x:d=4,o=22,b=9:c", "x:d=4,o=-1,b=9:c", "x:d=4,b=99999:p"}) {
    EXPECT_EQ(write(text, "a.mid", 0), kMidiFailed) << text;
  }
}

// Records message boxes and sequencer commands in order.
struct Stage : core::MessageSink {
  void Show(const core::Message& message) override {
    sequencer.commands.push_back((message.icon == core::Icon::kInformation ? "i[" : "[") +
                                 message.title + "]" + message.text);
  }
  std::vector<std::string> Play(core::RTTTLMelody& melody, const std::string& below = "") {
    const core::ScopedMessageSink scope(*this);
    melody.TempFolder = folder.path().string() + "/" + below;
    sequencer.commands.clear();
    PlayMelody(melody, sequencer);
    return sequencer.commands;
  }

  FakeSequencer sequencer;
  TempFolder folder;
};

TEST(PlayMelody, PlaysWhileItsBoxIsUp) {
  Stage stage;
  stage.sequencer.result = 275;  // error numbers of the sequencer are ignored
  core::RTTTLMelody melody = MelodyOf("Vals:d=4,o=5,b=63:c,");
  melody.FileName = "mine.mid";
  const std::string file = stage.folder.path().string() + "/rtlTmpFile.mid";
  const std::vector<std::string> want = {
      "close mR2M", "open " + file + " type sequencer alias mR2M", "play mR2M notify",
      "i[Reproduciendo]Reproduciendo melodia: Vals", "close mR2M"};
  EXPECT_EQ(stage.Play(melody), want);
  EXPECT_EQ(stage.Play(melody), want) << "and again over the file of the first time";
  EXPECT_EQ(melody.FileName, "mine.mid");
  const std::string bytes = stage.folder.Read("rtlTmpFile.mid");
  EXPECT_EQ(Hex(bytes.substr(bytes.size() - 12)), "00 90 3C 64 13 80 3C 00 00 FF 2F 00");
}

// Only playback inserts the gap and selects the beep; a phone's file has neither.
TEST(PlayMelody, EqualNeighboursAreApartAndTheVoiceIsChosen) {
  core::RTTTLMelody melody = MelodyOf("x:d=4,o=5,b=63:c,c,p,c,d,64d,d");
  ASSERT_EQ(core::ParseRTTTL(melody), core::kParsed);
  const std::string phone = MidiNoteEvents(melody);
  EXPECT_EQ(Hex(phone.substr(0, 16)), "00 90 3C 64 13 80 3C 00 00 90 3C 64 13 80 3C 00");
  EXPECT_EQ(Hex(MidiNoteEvents(melody, Repeats::kApart)),
            "00 90 3C 64 12 80 3C 00 01 90 3C 64 13 80 3C 00 13 90 3C 64 13 80 3C 00 "
            "00 90 3E 64 12 80 3E 00 01 90 3E 64 01 80 3E 00 00 90 3E 64 13 80 3E 00");
  const std::string beep = PlayedBytes(melody, Voice::kBeep);
  EXPECT_NE(beep.find("\xC0\x50"), std::string::npos);
  EXPECT_EQ(PlayedBytes(melody, Voice::kInstrument).size(), MidiFileBytes(melody).size());
  EXPECT_NE(MidiFileBytes(melody).find(phone), std::string::npos);
}

TEST(PlayMelody, ReportsABadNoteAndPlaysTheRest) {
  Stage stage;
  core::RTTTLMelody melody = MelodyOf("x:d=4,o=5,b=63:c,8,e");
  const std::vector<std::string> steps = stage.Play(melody);
  ASSERT_EQ(steps.size(), 6u);
  EXPECT_TRUE(steps.front().starts_with("[Tonadex]Error encontrado al separar la nota #2"));
  const std::string bytes = stage.folder.Read("rtlTmpFile.mid");
  EXPECT_EQ(Hex(bytes.substr(bytes.size() - 28)),
            "00 90 3C 64 13 80 3C 00 00 90 60 64 0A 80 60 00 00 90 40 64 13 80 40 00 00 FF 2F 00");
}

TEST(PlayMelody, NamesTheFileThatItCannotWrite) {
  Stage stage;
  core::RTTTLMelody melody = MelodyOf("c");
  const std::string file = stage.folder.path().string() + "/none/rtlTmpFile.mid";
  EXPECT_EQ(stage.Play(melody, "none/"),
            std::vector{"[Tonadex]No se pudo crear el archivo temporal.\r\nPor favor, borra el "
                        "siguiente fichero y vuelve a intentarlo:\r\n" +
                        file});
  EXPECT_EQ(melody.FileName, file) << "kept on a failure";
}

}  // namespace tonadex::midi::midi_file_test
