// An independent program reads a melody's MIDI file.
#include <gtest/gtest.h>

#include <cstdlib>
#include <fstream>
#include <string>
#include <vector>

#include "tests/support/temp_folder.h"

namespace tonadex::midi {
namespace {

struct Event {
  double ms;
  std::string what;
};

constexpr double kSamplesPerMs = 44.1;

// "Midi Event 57330: ME_NOTEON 0 81 100" lines of the player's trace.
std::vector<Event> NoteEvents(const std::filesystem::path& trace) {
  std::vector<Event> events;
  std::ifstream in(trace);
  for (std::string line; std::getline(in, line);) {
    const std::size_t name = line.find("ME_NOTEO");
    const std::size_t samples = line.find("Midi Event ");
    if (name != std::string::npos && samples != std::string::npos) {
      events.push_back({std::stod(line.substr(samples + 11)) / kSamplesPerMs, line.substr(name)});
    }
  }
  return events;
}

TEST(MidiFile, IsReadByAnotherProgram) {
  const test::TempFolder folder;
  folder.Write("m.txt", "x:d=4,o=5,b=125:c,8d#.,p,16a6,p\n");
  folder.Write("empty.cfg", "\n");
  const std::string at = folder.path().string();
  ASSERT_EQ(std::system((TONADEX_CLI " midi " + at + "/m.txt -o " + at + "/m.mid").c_str()), 0);
  ASSERT_EQ(std::system((TONADEX_TIMIDITY " -c " + at +
                         "/empty.cfg --verbose=5 --trace -id -Or "
                         "-o /dev/null " +
                         at + "/m.mid > " + at + "/trace 2>&1")
                            .c_str()),
            0);
  // 25 ms a tick: 19 and 14 ticks of notes, 19 of rest, 5 of the last note.
  const std::vector<Event> want = {{0, "ME_NOTEON 0 60 100"},    {475, "ME_NOTEOFF 0 60 0"},
                                   {475, "ME_NOTEON 0 63 100"},  {825, "ME_NOTEOFF 0 63 0"},
                                   {1300, "ME_NOTEON 0 81 100"}, {1425, "ME_NOTEOFF 0 81 0"}};
  const std::vector<Event> read = NoteEvents(folder / "trace");
  ASSERT_EQ(read.size(), want.size()) << folder.Read("trace");
  for (std::size_t i = 0; i < want.size(); ++i) {
    EXPECT_EQ(read[i].what, want[i].what);
    EXPECT_NEAR(read[i].ms, want[i].ms, 0.5) << want[i].what;
  }
}

}  // namespace
}  // namespace tonadex::midi
