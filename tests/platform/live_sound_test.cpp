// The sequencer plays in real time to a device that records to a file.
#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <cmath>
#include <optional>
#include <thread>

#include "platform/sound/fluid_sequencer.h"
#include "tests/platform/rendered_sound.h"
#include "tests/platform/sounding_melody.h"
#include "tests/support/eventually.h"
#include "tests/support/temp_folder.h"

namespace tonadex::platform::live_sound_test {

struct LiveSoundTest : testing::Test {
  void Play(std::string_view melody) {
    ASSERT_EQ(test::WriteMelody(folder / "m.mid", melody), midi::kMidiWritten);
    sequencer.emplace(SoundOptions{{"pipewire", "file:" + (folder / "heard.raw").string()},
                                   SoundOptionsFromEnvironment().soundFonts});
    EXPECT_EQ(
        sequencer->SendString("open " + (folder / "m.mid").string() + " type sequencer alias mR2M"),
        0);
    EXPECT_EQ(sequencer->SendString("play mR2M notify"), 0);
  }
  // The recording, starting with its first sound.
  std::vector<double> Heard() const {
    std::vector<double> samples = test::ReadSamples(folder / "heard.raw", 0);
    const auto sounds = [](double sample) { return std::abs(sample) > 0.002; };
    samples.erase(samples.begin(), std::find_if(samples.begin(), samples.end(), sounds));
    return samples;
  }

  test::TempFolder folder;
  std::optional<FluidSequencer> sequencer;
};

TEST_F(LiveSoundTest, WhatIsHeardKeepsUpWithThePosition) {
  constexpr double kAheadMs =
      210;  // this device has no buffer, so the recording runs ahead of the position
  Play("x:d=8,o=5,b=100:c,e,g");  // ten ticks of 31.25 ms each
  ASSERT_TRUE(test::Eventually([&] { return sequencer->PositionMs().value_or(0) >= 1100; }));
  // Retried, because a busy machine may delay one of the two.
  EXPECT_TRUE(test::Eventually([&] {
    const double position = sequencer->PositionMs().value();
    return std::abs(test::LengthMs(Heard()) - kAheadMs - position) < 150;
  }));
}

TEST_F(LiveSoundTest, CloseSilencesAtOnce) {
  Play("x:d=1,o=5,b=60:c,c,c");
  EXPECT_TRUE(test::Eventually([&] { return test::Loudness(Heard(), 100, 200) > 0.01; }));
  EXPECT_FALSE(sequencer->IsSilent());
  EXPECT_EQ(sequencer->SendString("close mR2M"), 0);
  const double heard = test::LengthMs(Heard());
  sequencer.reset();  // closes the device
  const std::vector<double> all = Heard();
  EXPECT_LT(test::LengthMs(all), heard + 2000);  // of 12 s
  EXPECT_LT(test::Loudness(all, heard + 100, 2000), 0.0005);
}

TEST_F(LiveSoundTest, CloseWhileStartingKeepsItSilent) {
  Play("x:d=1,o=5,b=60:c,c,c");
  EXPECT_EQ(sequencer->SendString("close mR2M"), 0);
  std::this_thread::sleep_for(std::chrono::milliseconds(300));
  sequencer.reset();
  EXPECT_EQ(test::LengthMs(Heard()), 0);
}

}  // namespace tonadex::platform::live_sound_test
