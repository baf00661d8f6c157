#include "app/melody_notes.h"

#include <gtest/gtest.h>

#include <array>
#include <map>
#include <random>
#include <regex>
#include <set>
#include <string>
#include <string_view>

#include "core/message_box.h"
#include "phones/catalogue.h"
#include "phones/formats.h"
#include "tests/core/table.h"
#include "tests/core/test_melody.h"
#include "tests/support/fakes.h"
#include "tests/support/melodies.h"

namespace tonadex::app::melody_notes_test {

// "start+length name/pitch" of each note, "." after a dotted one, "!" after one outside the range.
std::string Notes(const Drawing& drawing) {
  std::string text;
  for (const DrawnNote& note : drawing.notes) {
    text += std::to_string(static_cast<int>(note.start)) + "+" +
            std::to_string(static_cast<int>(note.length)) + " " +
            (note.pause ? "-" : note.name + "/" + std::to_string(note.pitch)) +
            (note.dotted ? "." : "") + (note.outside ? "!" : "") + "|";
  }
  return text;
}

TEST(MelodyDrawing, GivesTimesAndPitches) {
  const Drawing drawing = MelodyDrawing("x:d=4,o=5,b=120:c,8f#.6,p,2h4,16a#");
  EXPECT_EQ(Notes(drawing),
            "0+500 do/60|500+375 fa#/78.|875+500 -|1375+1000 si/59|2375+125 la#/70|");
  EXPECT_EQ(std::tuple(drawing.length, drawing.barLength), std::tuple(2500, 2000));
  EXPECT_EQ(std::tuple(drawing.lowest, drawing.highest), std::tuple(59, 78));
  EXPECT_EQ(DrawingInWords(drawing), "5 notas y pausas, 3 segundos, de si 4 a fa# 6");
}

TEST(MelodyDrawing, LeavesOutWhatCannotBeRead) {
  const test::Boxes boxes;
  EXPECT_EQ(Notes(MelodyDrawing("x:d=4,o=5,b=120:c,x,7c,9,p#,cjuh9hay")),
            "0+500 do/60|500+500 do/60|");
  for (const std::string_view text :
       {"", ":", "x", "x:d=4:", "x:d=4,o=5,b=0:c", "x:d=4,o=5,b=x:c", "x:d=4,o=5,b=-5:c",
        "x:d=4,o=-1,b=9:c,d", "x:d=4,o=11,b=9:c", "x:d=4.0000000,o=5,b=9:c"}) {
    EXPECT_EQ(MelodyDrawing(text, " Pulsaciones"), Drawing{}) << text;
  }
  EXPECT_EQ(boxes.Text(), "");
  EXPECT_EQ(DrawingInWords(MelodyDrawing("x:d=4,o=0,b=120:c,c#5")),
            "2 notas y pausas, 1 segundo, de do 0 a do# 5");
}

// The numbers of the notes whose octave the notices report.
std::set<int> Reported(std::string_view notices) {
  const std::regex note(R"((\d+) est. fuera del rango)");
  const std::string text(notices);
  std::set<int> numbers;
  for (std::sregex_iterator at(text.begin(), text.end(), note), end; at != end; ++at) {
    numbers.insert(std::stoi((*at)[1]));
  }
  return numbers;
}

// The shipped melodies, generated ones with octaves that no phone has, and long ones.
std::vector<std::string> AllKindsOfMelodies() {
  std::vector<std::string> melodies = test::Shelf();
  std::mt19937 random(3210);
  for (int round = 0; round < 100; ++round) {
    std::string notes = "x:d=4,o=" + std::to_string(random() % 11) + ",b=120:c";
    const auto first = random() % 9;
    for (int i = 0; i < 20; ++i) {
      constexpr std::array kPitches = {"c", "a#", "b", "h", "p", "8d."};
      notes += std::string(",") + kPitches[random() % kPitches.size()] +
               (random() % 5 == 0 ? "" : std::to_string(first + random() % 3));
    }
    melodies.push_back(notes);
  }
  for (const int count : {34, 35, 49, 50, 99, 100}) {
    melodies.push_back("x:d=4,o=5,b=125:c" + test::Repeated(",8d.", count));
  }
  return melodies;
}

// For each note, the notices, the hatching of the drawing and the phone's limit agree.
TEST(MelodyDrawing, MarksWhatTheNoticesName) {
  std::map<std::string_view, std::size_t> named, tooLong;
  test::FakeSaveQuestion noFile;
  for (const std::string& rtttl : AllKindsOfMelodies()) {
    std::set<std::string_view> seen;
    for (const phones::CatalogueRow& phone : phones::CatalogueRows()) {
      if (!seen.insert(phone.code).second) {
        continue;
      }
      core::RTTTLMelody melody = test::MelodyOf(rtttl);
      const test::Boxes boxes;
      const auto page = phones::ConvertSelectedMelody(melody, phone.model, "x", noFile).page;
      std::string notices = page ? page->notices : "";
      const std::set<int> reported = Reported(notices);
      notices += boxes.Text();
      const Drawing drawing = MelodyDrawing(rtttl, phone.model);
      std::set<int> hatched;
      for (const DrawnNote& note : drawing.notes) {
        if (note.outside) {
          hatched.insert(note.number + 1);
        }
      }
      named[phone.code] += reported.size();
      if (named[phone.code] > 0) {
        EXPECT_EQ(hatched, reported) << rtttl << phone.model;
      }
      const int limit = static_cast<int>(phones::FindFormat(phone.model)->noteLimit);
      const bool beyond = limit > 0 && drawing.written > limit;
      const bool kept = phone.code == "MOTS" && drawing.written == limit;  // warns too
      bool told = false;
      for (const std::string_view words : {"50 notas", "35 notas", "(100)"}) {
        told = told || core::Contains(notices, words);
      }
      EXPECT_EQ(beyond || kept, told) << rtttl << phone.model << notices;
      tooLong[phone.code] += beyond ? 1 : 0;
    }
  }
  for (const std::string_view code : {"NKEY", "EMSE", "EMSI", "SAM1", "SAM2"}) {
    EXPECT_GT(named[code], 0u) << code;
  }
  for (const std::string_view code : {"NCOM", "NKEY", "MOTS", "SAM1", "SAM2"}) {
    EXPECT_GT(tooLong[code], 0u) << code;
  }
}

// The phone's three octaves lie around the two most used ones, 5 and 6.
TEST(MelodyDrawing, MarksNotesOutsideThePhonesRange) {
  for (const test::Row& row : test::Table("Octaves outside")) {
    std::string marks;
    for (const DrawnNote& note :
         MelodyDrawing("x:d=4,o=5,b=120:c3,c4,c,c,c6,c6,c7,c8,p3", row[0]).notes) {
      marks += note.outside ? '!' : '.';
    }
    EXPECT_EQ(marks, row[1]) << row[0];
  }
}

// The marks follow the MIDI file: at tempo 120 a tick is 5000 / 192 ms, a quarter 19 ticks, an
// eighth 10.
TEST(NoteAt, FollowsThePlayback) {
  for (const test::Row& row : test::Table("Playback")) {
    const Drawing drawing = MelodyDrawing("x:d=4,o=5,b=120:" + row[0]);
    std::string changes;
    for (int tick = -1, last = -1; tick < 99; ++tick) {
      const int note = NoteAt(drawing, tick * 5000.0 / 192 + 0.001);
      if (note != std::exchange(last, note)) {
        changes += std::to_string(tick) + "=" + std::to_string(note) + ";";
      }
    }
    EXPECT_EQ(changes, row[1]) << row[0];
  }
  EXPECT_EQ(NoteAt({}, 0), -1);
}

}  // namespace tonadex::app::melody_notes_test
