#include <gtest/gtest.h>

#include <algorithm>

#include "core/rtttl_writer.h"
#include "core/windows1252.h"
#include "tests/core/table.h"
#include "tests/core/test_melody.h"
#include "tests/support/melodies.h"

namespace tonadex::core::rtttl_test {

using namespace test;

// Notes as "duration/pitch/octave": "8/c#/5." is a dotted one, "//" an empty one.
std::string Show(const RTTTLNote& note) {
  std::string text;
  text.append(note.Duration).append("/").append(note.Note).append("/").append(note.Octave);
  return text + (note.Dotted ? "." : "");
}

std::string ShowAll(const NoteList& notes) {
  std::string text;
  for (std::size_t i = 0; i < notes.size(); ++i) {
    text += (i == 0 ? "" : " ") + Show(notes[i]);
  }
  return text;
}

TEST(ParseRTTTL, FillsTheRecord) {
  for (const Row& row : Table("Melodies")) {
    RTTTLMelody melody;
    melody.Text = row[0];
    EXPECT_EQ(std::to_string(ParseRTTTL(melody)), row[1]) << row[0];
    EXPECT_EQ(melody.Name + "/" + melody.DefaultDuration + "/" + melody.DefaultOctave + "/" +
                  melody.Beats,
              row[2])
        << row[0];
    EXPECT_EQ(ShowAll(melody.Notes), row[3]) << row[0];
    EXPECT_EQ(melody.Text, row[4].empty() ? row[0] : row[4]);
  }
}

TEST(ParseRTTTL, AppliesNoDefaults) {
  RTTTLMelody melody = MelodyOf("x:k=1:c");
  melody.DefaultDuration = "16";
  melody.DefaultOctave = "7";
  melody.Beats = "99";
  EXPECT_EQ(ParseRTTTL(melody), kParsed);
  EXPECT_EQ(ShowAll(melody.Notes), "16/c/7");
  EXPECT_EQ(melody.Beats, "99");
}

TEST(ParseRTTTL, LeavesCopiesOfTheRecordAlone) {
  RTTTLMelody melody = ParsedMelody("x:d=4,o=5,b=9:c,d#");
  const RTTTLMelody copy = melody;
  melody.Text = "x:d=8,o=6,b=9:e,f.";
  ParseRTTTL(melody);
  EXPECT_EQ(ShowAll(copy.Notes), "4/c/5 4/d#/5");
}

TEST(ParseRTTTL, HasItsLimits) {
  const auto codeOf = [](const std::string& text) {
    RTTTLMelody melody = MelodyOf(text);
    return ParseRTTTL(melody);
  };
  EXPECT_EQ(codeOf("x:d=4:c" + Repeated(",c", 5000)), kParsed);
  EXPECT_EQ(codeOf("x:d=4:c" + Repeated(",c", 5001)), kParseFailure);
  EXPECT_EQ(codeOf(Repeated("x", 32766) + ":d=4:c"), kParsed);
  EXPECT_EQ(codeOf(Repeated("x", 32767) + ":d=4:c"), kParseFailure);
  EXPECT_EQ(codeOf("x:d=4:" + Repeated("c", 32767) + ",c"), kParseFailure);
  EXPECT_EQ(codeOf("x:d=4:c," + Repeated("c", 40000)), kParsed) << "no separator to look for";
}

TEST(ParseRTTTLNote, ReadsByPosition) {
  RTTTLMelody melody;
  melody.DefaultDuration = "4";
  melody.DefaultOctave = "6";
  for (const Row& row : Table("Items")) {
    std::string item = row[0];
    EXPECT_EQ(Show(ParseRTTTLNote(item, melody)), row[1]) << row[0];
    EXPECT_EQ(item, row[2].empty() ? row[0] : row[2]);
  }
}

TEST(ShowRTTTLError, SaysWhatTheCodeMeans) {
  ExpectRows("Error boxes", [](const Row& row) {
    const Boxes boxes;
    ShowRTTTLError(static_cast<std::int16_t>(std::stoi(row[0])));
    return boxes.Text();
  });
}

TEST(InitMelody, LeavesNothingOfAnotherMelody) {
  RTTTLMelody melody = ParsedMelody("otra:d=8,o=7,b=11:c,d");
  melody.FileName = "a.mid";
  InitMelody(melody, "/tmp/");
  EXPECT_EQ(melody.FileName + "|" + melody.TempFolder + "|" + std::to_string(melody.Instrument) +
                "|" + melody.Beats + "|" + melody.DefaultDuration + "|" + melody.DefaultOctave +
                "|" + melody.Credits + "|" + melody.TrackName,
            "a.mid|/tmp/|99|63|4|5|(c) 2026 Los autores de Tonadex\r\nhttp://tonadex.example/\r\n"
            "http://tonadex.example/melodias|MIDI by Tonadex v" TONADEX_VERSION);
  EXPECT_EQ(melody.Notes.size(), 5001u);
  EXPECT_EQ(Show(melody.Notes[0]) + Show(melody.Notes[5000]), "////");
  const std::string name = melody.Name;
  EXPECT_EQ(ParseRTTTL(melody), kParsed);
  EXPECT_EQ(melody.Name, name);
  EXPECT_EQ(melody.DefaultDuration + "|" + melody.DefaultOctave + "|" + melody.Beats, "4|5|225");
  EXPECT_EQ(melody.Notes.size(), 50u);
  EXPECT_EQ(std::ranges::count(melody.Text, '\n'), 0);
}

TEST(RtttlText, ParsesBackToTheSameNotes) {
  std::mt19937 random(14);
  for (int melodies = 0; melodies < 2000; ++melodies) {
    const PlainMelody melody = AnyMelody(random, 1, 8);
    const std::string text = RtttlText(melody);
    ASSERT_TRUE(text.starts_with(melody.name + ":"));
    ASSERT_EQ(ParsedMelody(text).Beats, std::to_string(melody.tempo));
    ASSERT_EQ(PlainNotes(text), melody.notes) << text;
  }
}

// Writes the parsed notes again with every other pair of defaults.
TEST(RtttlText, IsShortestWithItsDefaults) {
  std::mt19937 random(15);
  for (int melodies = 0; melodies < 300; ++melodies) {
    const std::string text = RtttlText(AnyMelody(random, 1, 8));
    const RTTTLMelody read = ParsedMelody(text);
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

}  // namespace tonadex::core::rtttl_test
