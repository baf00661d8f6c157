#include "formats/note_length.h"

#include <gtest/gtest.h>

#include <cmath>

#include "formats/octave_range.h"
#include "formats/tempo125.h"
#include "tests/core/table.h"
#include "tests/core/test_melody.h"

namespace tonadex::formats {
namespace {

using test::NumberOrError;

struct BaseLength {
  std::string_view duration;
  int ms;
};

constexpr BaseLength kBaseLengths[] = {{"1", 2000}, {"2", 1000}, {"4", 500},
                                       {"8", 250},  {"16", 125}, {"32", 63}};

TEST(NoteLengthMs, IsTheNearestMillisecondAtEveryTempo) {
  for (const auto& [duration, ms] : kBaseLengths) {
    for (int tempo = 20; tempo <= 900; ++tempo) {
      for (const bool dotted : {false, true}) {
        // In half units: |2 x length x tempo - base x 125 x (2 or 3)| is at most half a unit.
        const int exact = ms * 125 * (dotted ? 3 : 2);
        const int length = NoteLengthMs(duration, std::to_string(tempo), dotted);
        EXPECT_LE(std::abs(2 * tempo * length - exact), tempo) << duration << " at " << tempo;
      }
    }
  }
}

TEST(NoteLengthMs, RoundsHalvesToEvenAndChecksItsInput) {
  for (const test::Row& row : test::Table("Note lengths")) {
    EXPECT_EQ(NumberOrError([&] { return NoteLengthMs(row[0], row[1], row[2] == "yes"); }), row[3])
        << row[0] << " at " << row[1];
  }
}

// "85=32 110=32. …": the last millisecond of each run of equal results.
TEST(DurationForLength, EveryMillisecondHasItsBand) {
  std::string bands;
  std::string last;
  for (std::int16_t ms = 0; ms <= 4001; ++ms) {
    std::string pitch = "c";
    const std::string duration(DurationForLength(ms, pitch));
    const std::string band = duration + pitch.substr(1);
    if (band != last && ms > 0) {
      bands += std::to_string(ms - 1) + "=" + last + " ";
    }
    last = band;
  }
  EXPECT_EQ(bands + last,
            "85=32 110=32. 160=16 218=16. 317=8 437=8. 605=4 875=4. 1255=2 1750=2. 3005=1 1.");
  std::string pitch = "c#";
  EXPECT_EQ(DurationForLength(32767, pitch), "1");
  EXPECT_EQ(pitch, "c#.");
  EXPECT_EQ(DurationForLength(-1, pitch), "32");
  EXPECT_EQ(pitch, "c#.");
}

TEST(RtttlAtTempo125, RewritesDurations) {
  for (const test::Row& row : test::Table("Tempo125")) {
    core::RTTTLMelody melody = test::MelodyOf(row[0]);
    EXPECT_EQ(RtttlAtTempo125(melody), row[1]);
  }
}

TEST(OctaveRange, IsPlacedAroundTheTwoMostUsedOctaves) {
  for (const test::Row& row : test::Table("Octave ranges")) {
    core::RTTTLMelody melody = test::MelodyOf(row[0]);
    const test::Boxes boxes;
    EXPECT_EQ(NumberOrError([&] { return frmOctave{melody}.mGetOctaveRange("k", 2); }), row[1])
        << row[0];
    EXPECT_EQ(std::to_string(boxes.recorded.messages.size()), row[2].empty() ? "0" : row[2])
        << row[0];
  }
}

}  // namespace
}  // namespace tonadex::formats
