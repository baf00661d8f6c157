#include <gtest/gtest.h>

#include <random>

#include "core/runtime_error.h"
#include "core/windows1252.h"
#include "phones/rtttl_check.h"
#include "phones/rtttl_repair.h"
#include "phones/transpose.h"
#include "tests/core/table.h"
#include "tests/support/melodies.h"

namespace tonadex::phones {
namespace {

TEST(CheckRtttl, MarksAndNamesEveryFault) {
  for (const test::Row& row : test::Table("Checks")) {
    const std::string text = core::FromUtf8(row[0]);
    const MelodyCheck check = CheckRtttl(text);
    const bool good = row[1] == "-";
    EXPECT_EQ(check.verdict == Verdict::kBad, !good) << row[0];
    EXPECT_TRUE(core::ToUtf8(check.sentence).starts_with(row[2]))
        << row[0] << ": " << core::ToUtf8(check.sentence);
    std::string marked;
    for (const RtttlFault& fault : check.faults) {
      marked += (marked.empty() ? "" : ";") + text.substr(fault.where.start, fault.where.length);
    }
    if (!good) {
      EXPECT_EQ(std::to_string(check.faults.front().note), row[1]) << row[0];
    }
    if (row.fields.size() > 3) {
      EXPECT_EQ(marked, row[3]) << row[0];
    }
  }
}

TEST(RepairRtttl, MendsWhatIsFoundOnTheNet) {
  for (const test::Row& row : test::Table("Repairs")) {
    std::string texts;
    std::string change;
    for (const RepairedMelody& melody : RepairRtttl(FromPasted(row[0]))) {
      change = texts.empty() && !melody.changes.empty() ? melody.changes.front() : change;
      texts += (texts.empty() ? "" : "\n") + core::ToUtf8(melody.text);
      EXPECT_EQ(CheckRtttl(melody.text).verdict, Verdict::kGood) << melody.text;
    }
    EXPECT_EQ(texts, row[1]) << row[0];
    EXPECT_TRUE(core::ToUtf8(change).starts_with(row[2]) && change.empty() == row[2].empty())
        << row[0] << ": " << core::ToUtf8(change);
  }
}

// Damages notes one at a time. Good notes keep their sound, and the check reports a fault exactly
// if the parser reads another melody than the intended one.
TEST(RepairRtttl, KeepsTheSoundOfGoodNotes) {
  std::mt19937 random(1);
  const auto oneOf = [&random](std::initializer_list<const char*> texts) {
    return std::string(*(texts.begin() + random() % texts.size()));
  };
  for (int melody = 0; melody < 500; ++melody) {
    std::string meant;
    std::string damaged;
    for (int note = 0; note < 8; ++note) {
      const std::string duration = oneOf({"", "1", "2", "4", "8", "16", "32"});
      const std::string pitch = oneOf({"c", "c#", "e", "f#", "a", "b"});
      const std::string dot = oneOf({"", "."});
      const std::string octave = oneOf({"", "4", "5", "7"});
      const std::string comma = note == 0 ? "" : ",";
      meant += comma + duration + pitch + dot + octave;
      damaged += comma + (random() % 4 == 0 ? duration + pitch + octave + dot
                                            : duration + pitch + dot + octave);
    }
    const std::string header = "V:d=4,o=6,b=100:", text = header + damaged;
    const auto want = test::PlainNotes(header + meant);
    EXPECT_EQ(CheckRtttl(text).verdict == Verdict::kGood, test::PlainNotes(text) == want) << text;
    EXPECT_EQ(test::PlainNotes(RepairRtttl(text).front().text), want) << text;
  }
}

TEST(Transposed, MovesEachNoteAndComesBack) {
  std::mt19937 random(20261122);
  for (int round = 0; round < 300; ++round) {
    const std::string text = core::RtttlText(test::AnyMelody(random));
    const int semitones = static_cast<int>(random() % 49) - 36;  // to the octaves 1 to 8
    SCOPED_TRACE(text + " by " + std::to_string(semitones));
    const std::string moved = Transposed(text, semitones), back = Transposed(moved, -semitones);
    auto want = test::PlainNotes(text);
    EXPECT_EQ(test::PlainNotes(back), want);
    for (core::PlainNote& note : want) {
      const int pitch = 12 * note.octave + note.semitone + semitones;
      note = note.semitone < 0 ? note
                               : core::PlainNote{pitch % 12, pitch / 12, note.length, note.dotted};
    }
    EXPECT_EQ(test::PlainNotes(moved), want);
    EXPECT_EQ(Transposed(back, semitones), moved);
  }
}

TEST(Transposed, WritesWhatAPersonWouldOrSaysWhyNot) {
  const auto transposed = [](const test::Row& row) {
    try {
      return Transposed(row[0], std::stoi(row[1]));
    } catch (const core::RunTimeError& error) {
      return core::ToUtf8(error.what());
    }
  };
  test::ExpectRows("Transposed", transposed, 2);
}

}  // namespace
}  // namespace tonadex::phones
