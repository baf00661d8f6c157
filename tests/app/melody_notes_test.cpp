#include "app/melody_notes.h"

#include <gtest/gtest.h>

#include <string>
#include <string_view>

#include "core/message_box.h"
#include "tests/core/table.h"

namespace tonadex::app {
namespace {

// "start+length name/pitch" of each note, "." behind a dotted one, "!" behind one outside.
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
  EXPECT_EQ(drawing.length, 2500);
  EXPECT_EQ(drawing.barLength, 2000);
  EXPECT_EQ(drawing.lowest, 59);
  EXPECT_EQ(drawing.highest, 78);
  EXPECT_EQ(DrawingInWords(drawing), "5 notas y pausas, 3 segundos, de si 4 a fa# 6");
}

TEST(MelodyDrawing, LeavesOutWhatCannotBeRead) {
  core::RecordingMessages boxes;
  const core::ScopedMessageSink sink(boxes);
  EXPECT_EQ(Notes(MelodyDrawing("x:d=4,o=5,b=120:c,x,7c,9,p#,cjuh9hay")),
            "0+500 do/60|500+500 do/60|");
  for (const std::string_view text :
       {"", ":", "x", "x:d=4:", "x:d=4,o=5,b=0:c", "x:d=4,o=5,b=x:c", "x:d=4,o=5,b=-5:c",
        "x:d=4,o=-1,b=9:c,d", "x:d=4,o=11,b=9:c", "x:d=4.0000000,o=5,b=9:c"}) {
    EXPECT_EQ(MelodyDrawing(text, " Pulsaciones"), Drawing{}) << text;
  }
  EXPECT_TRUE(boxes.messages.empty());
  EXPECT_EQ(DrawingInWords(MelodyDrawing("x:d=4,o=0,b=120:c,c#5")),
            "2 notas y pausas, 1 segundo, de do 0 a do# 5");
}

// Octaves 4 to 8: the phone's three lie around the two most used ones, 5 and 6.
TEST(MelodyDrawing, MarksNotesOutsideThePhonesRange) {
  for (const test::Row& row : test::Table("Octaves outside")) {
    std::string marks;
    for (const DrawnNote& note :
         MelodyDrawing("x:d=4,o=5,b=120:c4,c,c,c6,c6,c7,c8,p", row[0]).notes) {
      marks += note.outside ? '!' : '.';
    }
    EXPECT_EQ(marks, row[1]) << row[0];
  }
}

// The marks follow the MIDI file: at tempo 120 a tick is 5000 / 192 ms, a quarter 19 ticks, an
// eighth 10.
TEST(NoteAt, FollowsThePlayback) {
  for (const test::Row& row : test::Table("Playback")) {
    const double ms = std::stoi(row[1]) * 5000.0 / 192 + 0.001;
    EXPECT_EQ(std::to_string(NoteAt(MelodyDrawing("x:d=4,o=5,b=120:" + row[0]), ms)), row[2])
        << row[0] << " at " << row[1];
  }
  EXPECT_EQ(NoteAt({}, 0), -1);
}

}  // namespace
}  // namespace tonadex::app
