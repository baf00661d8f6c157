#include "core/rtttl.h"

#include <gtest/gtest.h>

#include <algorithm>

#include "tests/core/table.h"
#include "tests/core/test_melody.h"

namespace tonadex::core {
namespace {

using test::MelodyOf;
using test::Repeated;
using test::Row;
using test::Table;

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
  RTTTLMelody melody = test::ParsedMelody("x:d=4,o=5,b=9:c,d#");
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
  test::ExpectRows("Error boxes", [](const Row& row) {
    const test::Boxes boxes;
    ShowRTTTLError(static_cast<std::int16_t>(std::stoi(row[0])));
    return boxes.Text();
  });
}

TEST(InitMelody, LeavesNothingOfAnotherMelody) {
  RTTTLMelody melody = test::ParsedMelody("otra:d=8,o=7,b=11:c,d");
  melody.FileName = "a.mid";
  InitMelody(melody, "/tmp/");
  EXPECT_EQ(melody.FileName + "|" + melody.TempFolder, "a.mid|/tmp/");
  EXPECT_EQ(melody.Instrument, 99);
  EXPECT_EQ(melody.Beats + "|" + melody.DefaultDuration + "|" + melody.DefaultOctave, "63|4|5");
  EXPECT_EQ(melody.Credits,
            "(c) 2026 Los autores de Tonadex\r\nhttp://tonadex.example/\r\n"
            "http://tonadex.example/melodias");
  EXPECT_EQ(melody.TrackName, "MIDI by Tonadex v" TONADEX_VERSION);
  EXPECT_EQ(melody.Notes.size(), 5001u);
  EXPECT_EQ(Show(melody.Notes[0]) + Show(melody.Notes[5000]), "////");
  const std::string name = melody.Name;
  EXPECT_EQ(ParseRTTTL(melody), kParsed);
  EXPECT_EQ(melody.Name, name);
  EXPECT_EQ(melody.DefaultDuration + "|" + melody.DefaultOctave + "|" + melody.Beats, "4|5|225");
  EXPECT_EQ(melody.Notes.size(), 50u);
  EXPECT_EQ(std::ranges::count(melody.Text, '\n'), 0);
}

}  // namespace
}  // namespace tonadex::core
