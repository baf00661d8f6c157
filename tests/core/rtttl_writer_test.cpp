#include "core/rtttl_writer.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <random>

#include "core/windows1252.h"
#include "tests/core/test_melody.h"

namespace tonadex::core {
namespace {

constexpr std::string_view kLetters = "c d ef g a b";

PlainMelody AnyMelody(std::mt19937& random) {
  const auto below = [&random](unsigned count) { return static_cast<int>(random() % count); };
  PlainMelody melody{.name = "x y", .tempo = 25 + below(900), .notes = {}};
  const unsigned octaves = 1 + random() % 8;
  const std::size_t lengths = 1 + random() % kLengths.size();
  for (int left = 1 + below(60); left > 0; --left) {
    melody.notes.push_back({.semitone = below(13) - 1,
                            .octave = 1 + below(octaves),
                            .length = kLengths[random() % lengths],
                            .dotted = below(3) == 0});
  }
  return melody;
}

PlainNote PlainOf(const NoteCodes& note) {
  if (note.letter == 'p') {
    return {.length = note.duration, .dotted = note.dotted};
  }
  const int natural = static_cast<int>(kLetters.find(note.letter));
  return {.semitone = natural + (note.IsSharp() ? 1 : 0),
          .octave = note.octave,
          .length = note.duration,
          .dotted = note.dotted};
}

TEST(RtttlText, ParsesBackToTheSameNotes) {
  std::mt19937 random(14);
  for (int melodies = 0; melodies < 2000; ++melodies) {
    PlainMelody melody = AnyMelody(random);
    const RTTTLMelody read = test::ParsedMelody(RtttlText(melody));
    ASSERT_EQ(read.Name + read.Beats, melody.name + std::to_string(melody.tempo));
    for (PlainNote& note : melody.notes) {
      note.octave = note.semitone < 0 ? PlainNote{}.octave : note.octave;
    }
    std::vector<PlainNote> notes;
    std::ranges::transform(read.Notes.Codes(), std::back_inserter(notes), PlainOf);
    ASSERT_EQ(notes, melody.notes) << RtttlText(melody);
  }
}

// Writes the parsed notes again with every other pair of defaults.
TEST(RtttlText, IsShortestWithItsDefaults) {
  std::mt19937 random(15);
  for (int melodies = 0; melodies < 300; ++melodies) {
    const std::string text = RtttlText(AnyMelody(random));
    const RTTTLMelody read = test::ParsedMelody(text);
    for (const int duration : kLengths) {
      for (int octave = 1; octave <= 8; ++octave) {
        std::string other = "x y:d=" + std::to_string(duration) + ",o=" + std::to_string(octave) +
                            ",b=" + read.Beats + ":";
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
