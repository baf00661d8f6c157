#include "core/rtttl_writer.h"

#include <gtest/gtest.h>

#include "core/windows1252.h"
#include "tests/core/test_melody.h"
#include "tests/support/melodies.h"

namespace tonadex::core {
namespace {

TEST(RtttlText, ParsesBackToTheSameNotes) {
  std::mt19937 random(14);
  for (int melodies = 0; melodies < 2000; ++melodies) {
    const PlainMelody melody = test::AnyMelody(random, 1, 8);
    const std::string text = RtttlText(melody);
    ASSERT_TRUE(text.starts_with(melody.name + ":"));
    ASSERT_EQ(test::ParsedMelody(text).Beats, std::to_string(melody.tempo));
    ASSERT_EQ(test::PlainNotes(text), melody.notes) << text;
  }
}

// Writes the parsed notes again with every other pair of defaults.
TEST(RtttlText, IsShortestWithItsDefaults) {
  std::mt19937 random(15);
  for (int melodies = 0; melodies < 300; ++melodies) {
    const std::string text = RtttlText(test::AnyMelody(random, 1, 8));
    const RTTTLMelody read = test::ParsedMelody(text);
    for (const int duration : kLengths) {
      for (int octave = 1; octave <= 8; ++octave) {
        std::string other = read.Name + ":d=" + std::to_string(duration) +
                            ",o=" + std::to_string(octave) + ",b=" + read.Beats + ":";
        for (const RTTTLNote& note : read.Notes) {
          other += note.Duration == std::to_string(duration) ? "" : note.Duration;
          other.append(note.Note).append(note.Dotted ? "." : "");
          other += IsPause(note) || note.Octave == std::to_string(octave) ? "" : note.Octave;
          other += ',';
        }
        ASSERT_LE(text.size(), other.size() - 1) << text << "\n" << other;
      }
    }
  }
}

TEST(RtttlText, KeepsTheNameReadable) {
  const auto named = [](std::string_view name) {
    return RtttlText({.name = std::string(name), .tempo = 63, .notes = {{.semitone = 0}}});
  };
  EXPECT_EQ(named("a:b\r\nc"), "a b  c:d=4,o=5,b=63:c");
  EXPECT_EQ(named(" :"), u8"melodía:d=4,o=5,b=63:c"_w);
}

}  // namespace
}  // namespace tonadex::core
