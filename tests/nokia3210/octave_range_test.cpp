#include "nokia3210/octave_range.h"

#include <gtest/gtest.h>

#include <vector>

#include "tests/core/test_melody.h"

namespace tonadex::nokia3210 {
namespace {

using test::MelodyOf;

TEST(OctaveRange, IsPlacedAroundTheTwoMostUsedOctaves) {
  constexpr std::string_view kMelodies[] = {
      "c,c,c6",
      "c,d",
      "x:o=6:c",
      "c4,c,c,c,c,c,c6,c6,c6,c6,c6",
      "c4,c5,c6",            // of equals the higher ones
      "c8,c7,c6,c4,c4",      // (4 + 8) / 2 - 1
      "x:o=1:c,p4,p4,p4",    // 2.5 - 1; pauses count
      "x:d=4:c",             // no octave is 0
      "x:d=4:c,c1",          // -0.5 rounded up
      "x:o=4.5:c,c6,c6,c6",  // 4.5 is 4
      "x:o=5.5:c",           // and 5.5 is 6
      "x:o=10:c",
      "x:d=4,o=6:c,,c7",  // the empty notes of a bad melody count too
  };
  std::vector<int> lowest;
  for (const std::string_view text : kMelodies) {
    core::RTTTLMelody melody = MelodyOf(text);
    lowest.push_back(frmOctave{melody}.mGetOctaveRange("k", 2));
  }
  EXPECT_EQ(lowest, (std::vector<int>{5, 4, 5, 5, 5, 5, 2, -1, 0, 4, 5, 9, 6}));
}

TEST(OctaveRange, ReportsAndFails) {
  for (const auto& [text, error] : {std::pair{"x:o=11:c", 9},
                                    {"x:o=-1:c", 9},
                                    {"x:o=k:c", 13},
                                    {"x:o=40000:c", 6},
                                    {"x:y", 11},
                                    {":x:c4", -1}}) {
    const test::Boxes boxes;
    core::RTTTLMelody melody = MelodyOf(text);
    EXPECT_EQ(test::ErrorOf([&] { AutoOctave(melody, 2); }), std::max(error, 0)) << text;
    EXPECT_EQ(boxes.recorded.messages.size(), error == 11 || error == -1 ? 1u : 0u) << text;
  }
}

}  // namespace
}  // namespace tonadex::nokia3210
