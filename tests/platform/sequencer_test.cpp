#include <gtest/gtest.h>

#include <chrono>
#include <thread>

#include "platform/sound/fluid_sequencer.h"
#include "tests/core/table.h"
#include "tests/platform/environment.h"
#include "tests/platform/sounding_melody.h"
#include "tests/support/eventually.h"
#include "tests/support/temp_folder.h"

namespace tonadex::platform::sequencer_test {

using Clock = std::chrono::steady_clock;

double MsSince(Clock::time_point begun) {
  return std::chrono::duration<double, std::milli>(Clock::now() - begun).count();
}

struct FluidSequencerTest : testing::Test {
  FluidSequencerTest() { EXPECT_EQ(test::WriteMelody(file), midi::kMidiWritten); }
  std::string OpenCommand(const std::string& name) const {
    return "open " + name + " type sequencer alias mR2M";
  }
  static SoundOptions Drivers(std::vector<std::string> drivers) {
    return {std::move(drivers), SoundOptionsFromEnvironment().soundFonts};
  }

  test::TempFolder folder;
  const std::filesystem::path file = folder / "m.mid";
};

TEST_F(FluidSequencerTest, AnswersCommandsWithTheirNumbers) {
  std::filesystem::create_directory(folder / "con blanco");
  std::filesystem::copy(file, folder / "con blanco/m.mid");
  std::filesystem::copy(file, folder / "a\u00f1o\u20ac.mid");
  FluidSequencer sequencer(Drivers({"file"}));
  for (test::Row& row : test::Table("Sequencer")) {
    std::string& command = row.fields[0];
    core::ReplaceAll(command, "@", folder.path().string());
    EXPECT_EQ(std::to_string(sequencer.SendString(command)), row[1]) << command;
  }
}

TEST_F(FluidSequencerTest, WithoutSoundTheClockStandsInAndNothingIsPrinted) {
  const SoundOptions noFont = {{"file"}, {"/nowhere.sf2"}};
  const test::ScopedVariable off("TONADEX_SOUND", "ninguno");
  for (const SoundOptions& options :
       {noFont, Drivers({"pipewire", "oss", "none such"}), SoundOptionsFromEnvironment()}) {
    testing::internal::CaptureStderr();
    testing::internal::CaptureStdout();
    {
      FluidSequencer sequencer(options);
      EXPECT_EQ(sequencer.SendString(OpenCommand(file.string())), 0);
      EXPECT_EQ(sequencer.PositionMs(), std::nullopt);
      EXPECT_EQ(sequencer.SendString("play mR2M notify"), 0);
      EXPECT_TRUE(test::Eventually([&] { return sequencer.PositionMs() > 50; }));
      EXPECT_TRUE(sequencer.IsSilent());
      const Clock::time_point begun = Clock::now();
      const double before = sequencer.PositionMs().value();
      const Clock::time_point asked = Clock::now();
      std::this_thread::sleep_for(std::chrono::milliseconds(30));
      const double least = MsSince(asked);
      const double passed = sequencer.PositionMs().value() - before;
      EXPECT_GE(passed, least);
      EXPECT_LE(passed, MsSince(begun));
      EXPECT_EQ(sequencer.SendString("close mR2M"), 0);
      EXPECT_EQ(sequencer.PositionMs(), std::nullopt);
    }
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
    EXPECT_EQ(testing::internal::GetCapturedStdout(), "");
  }
}

// With whatever sound devices this machine has, if any.
TEST_F(FluidSequencerTest, TheUsualDriversNeitherHangNorPrint) {
  const test::ScopedVariable automatic("TONADEX_SOUND", "auto");
  testing::internal::CaptureStderr();
  const Clock::time_point begun = Clock::now();
  {
    FluidSequencer sequencer;
    sequencer.SendString(OpenCommand(file.string()));
    sequencer.SendString("play mR2M notify");
    EXPECT_TRUE(test::Eventually([&] { return sequencer.PositionMs() > 20; }));
  }
  EXPECT_LT(MsSince(begun), 10'000);
  EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
}

// Commands of an impatient user: none may wait for the device or for the previous playback.
TEST_F(FluidSequencerTest, OrdersNeverWait) {
  FluidSequencer sequencer(Drivers({"file"}));
  for (int i = 0; i < 20; ++i) {
    for (const std::string& command :
         {OpenCommand(file.string()), std::string("play mR2M notify"), std::string("close mR2M")}) {
      if (i % 4 == 0 && command.starts_with("close")) {
        ASSERT_TRUE(test::Eventually([&] { return sequencer.PositionMs() > 0; }));
      }
      const Clock::time_point begun = Clock::now();
      ASSERT_EQ(sequencer.SendString(command), 0) << command;
      EXPECT_LT(MsSince(begun), 1000) << command;  // less than a device may take to open
    }
  }
}

}  // namespace tonadex::platform::sequencer_test
