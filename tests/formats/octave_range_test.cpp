#include "formats/octave_range.h"

#include <gtest/gtest.h>

#include "tests/core/table.h"
#include "tests/core/test_melody.h"

namespace tonadex::formats {
namespace {

TEST(OctaveRange, IsPlacedAroundTheTwoMostUsedOctaves) {
  for (const test::Row& row : test::Table("Octave ranges")) {
    core::RTTTLMelody melody = test::MelodyOf(row[0]);
    const test::Boxes boxes;
    int lowest = 0;
    const int error = test::ErrorOf([&] { lowest = frmOctave{melody}.mGetOctaveRange("k", 2); });
    EXPECT_EQ(error == 0 ? std::to_string(lowest) : "error " + std::to_string(error), row[1])
        << row[0];
    EXPECT_EQ(std::to_string(boxes.recorded.messages.size()), row[2].empty() ? "0" : row[2])
        << row[0];
  }
}

}  // namespace
}  // namespace tonadex::formats
