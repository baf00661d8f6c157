#include "formats/note_length.h"

#include <gtest/gtest.h>

#include <cmath>

#include "formats/tempo125.h"
#include "tests/core/table.h"
#include "tests/core/test_melody.h"

namespace tonadex::formats {
namespace {

using test::ErrorOf;

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
        // In halves: length x 2 x tempo against base x 125 x (2 or 3), at most half a unit off.
        const int exact = ms * 125 * (dotted ? 3 : 2);
        const int length = NoteLengthMs(duration, std::to_string(tempo), dotted);
        EXPECT_LE(std::abs(2 * tempo * length - exact), tempo) << duration << " at " << tempo;
      }
    }
  }
}

TEST(NoteLengthMs, RoundsHalvesToEvenAndChecksItsInput) {
  EXPECT_EQ(NoteLengthMs("32", "125", false), 63);
  EXPECT_EQ(NoteLengthMs("32", "125", true), 94);   // 94.5
  EXPECT_EQ(NoteLengthMs("32", "250", false), 32);  // 31.5
  EXPECT_EQ(NoteLengthMs("8", "100", false), 312);  // 312.5
  EXPECT_EQ(NoteLengthMs("4", "100", true), 938);   // 937.5, rounded once
  EXPECT_EQ(NoteLengthMs("4", "62.5", false), 1000);
  EXPECT_EQ(NoteLengthMs("4", "-125", false), -500);
  for (const std::string_view unknown : {"64", "3", "4 ", "04", "4.0", ""}) {
    EXPECT_EQ(NoteLengthMs(unknown, "0", true), 0) << "before the tempo is looked at: " << unknown;
  }
  EXPECT_EQ(ErrorOf([] { NoteLengthMs("4", "0", false); }), 11);
  EXPECT_EQ(ErrorOf([] { NoteLengthMs("4", "", false); }), 11);
  EXPECT_EQ(ErrorOf([] { NoteLengthMs("4", "fast", false); }), 13);
  EXPECT_EQ(NoteLengthMs("1", "7.63", false), 32765);
  EXPECT_EQ(ErrorOf([] { NoteLengthMs("1", "7.62", false); }), 6);
}

// "85=32 110=32. …": the last millisecond of each run of equal answers.
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
  for (const auto& [text, error] :
       {std::pair{"x:b=0:4c", 11}, {"x:o=5:4c", 11}, {"x:b=rápido:4c", 13}, {"x:b=1:1c", 6}}) {
    core::RTTTLMelody melody = test::MelodyOf(text);
    EXPECT_EQ(ErrorOf([&] { RtttlAtTempo125(melody); }), error) << text;
  }
}

}  // namespace
}  // namespace tonadex::formats
