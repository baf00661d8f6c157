#include "platform/sound/render_to_wav.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <string>

#include "midi/note_times.h"
#include "tests/core/test_melody.h"
#include "tests/platform/rendered_sound.h"
#include "tests/platform/sounding_melody.h"
#include "tests/support/temp_folder.h"

namespace tonadex::platform::render_to_wav_test {

constexpr std::size_t kWavHeader = 44;

struct RenderToWavTest : testing::Test {
  RenderResult Render(std::string_view melody, std::int16_t instrument = test::kPiano) {
    EXPECT_EQ(test::WriteMelody(folder / "m.mid", melody, instrument), midi::kMidiWritten);
    const RenderResult result = RenderToWav(folder / "m.mid", folder / "m.wav");
    samples = test::ReadSamples(folder / "m.wav", kWavHeader);
    return result;
  }

  test::TempFolder folder;
  std::vector<double> samples;
};

// Three whole rests are 231 ticks; one delta byte keeps 103 of them. The file does not contain a
// pause at the end.
TEST_F(RenderToWavTest, EveryNoteSoundsAtItsTimeAndEveryRestIsSilent) {
  for (const std::string_view text :
       {test::kMelody, std::string_view("x:d=4,o=5,b=100:2.c,1p,1p,1p,e,2p,8g#,1p")}) {
    SCOPED_TRACE(text);
    ASSERT_EQ(Render(text), RenderResult::kDone);
    const core::RTTTLMelody melody = test::ParsedMelody(text);
    std::vector<midi::NoteTime> want = midi::NoteTimes(melody);
    std::erase_if(want, [](const auto& time) { return time.number == midi::kPauseNumber; });
    for (std::size_t i = 0; i < want.size(); ++i) {
      const auto [start, end] = std::pair(want[i].start, want[i].end);
      EXPECT_GT(test::Loudness(samples, start + 20, 40), 0.01) << i;
      if (i > 0 && start > want[i - 1].end + 500) {
        EXPECT_LT(test::Loudness(samples, start - 60, 40), 0.003) << i << ": the rest before it";
      }
      if (i + 1 == want.size() || want[i + 1].start > end + 30) {
        EXPECT_LT(test::Loudness(samples, end + 40, 20), test::Loudness(samples, end - 40, 40));
      }
    }
    // The file ends shortly after the last note has faded.
    EXPECT_GT(test::LengthMs(samples), want.back().end);
    EXPECT_LT(test::LengthMs(samples), want.back().end + 3000);
  }
}

TEST_F(RenderToWavTest, TheInstrumentOfTheProgramIsHeardWithoutDistortion) {
  ASSERT_EQ(Render("x:d=8,o=6,b=225:c,e,g,c7,c,e,g,c7,1p,c", 99), RenderResult::kDone);
  const double loudest = *std::max_element(samples.begin(), samples.end());
  EXPECT_GT(loudest, 0.2);
  EXPECT_LT(loudest, 0.95);
}

TEST_F(RenderToWavTest, OddMelodiesEnd) {
  for (const std::string_view melody :
       {"x:d=4,o=5,b=0:c,d", "x:d=4,o=5,b=100:p", "x:d=4,o=5,b=100:3c"}) {
    EXPECT_EQ(Render(melody), RenderResult::kDone) << melody;
    EXPECT_LT(test::LengthMs(samples), 10'000) << melody;
  }
}

TEST_F(RenderToWavTest, AFailureLeavesTheFileThatWasThere) {
  ASSERT_EQ(test::WriteMelody(folder / "m.mid"), midi::kMidiWritten);
  folder.Write("text.mid", "no music");
  folder.Write("old.wav", "old");
  folder.Write("cut.sf2", std::string("RIFF\xFF\0\0\0sfbk", 12) + "LIST");
  const SoundOptions broken = {{}, {"/nowhere.sf2", folder / "text.mid", folder / "cut.sf2"}};
  testing::internal::CaptureStderr();
  const auto old = folder / "old.wav";
  EXPECT_EQ(RenderToWav(folder / "none.mid", old), RenderResult::kNoMidiFile);
  EXPECT_EQ(RenderToWav(folder / "text.mid", old), RenderResult::kNoMidiFile);
  EXPECT_EQ(RenderToWav(folder / "m.mid", old, broken), RenderResult::kNoSoundFont);
  EXPECT_EQ(RenderToWav(folder / "m.mid", folder / "no/m.wav"), RenderResult::kWriteFailed);
  EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
  EXPECT_EQ(folder.Read("old.wav"), "old");
  EXPECT_EQ(std::distance(std::filesystem::directory_iterator(folder.path()), {}), 4);
}

}  // namespace tonadex::platform::render_to_wav_test
