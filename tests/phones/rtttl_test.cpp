// RTTTL texts: their check and repair, their transposing, and the shipped ones.
#include <gtest/gtest.h>

#include <algorithm>
#include <fstream>
#include <random>
#include <regex>
#include <set>

#include "core/runtime_error.h"
#include "core/windows1252.h"
#include "data/shelf.h"
#include "formats/octave_range.h"
#include "phones/paste_signs.h"
#include "phones/rtttl_check.h"
#include "phones/rtttl_repair.h"
#include "phones/transpose.h"
#include "tests/core/table.h"
#include "tests/core/test_melody.h"
#include "tests/support/melodies.h"

namespace tonadex::phones::rtttl_test {

using std::string;

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
  const RtttlFault empty = CheckRtttl("V:d=4,o=5,b=9:c,,d").faults.front();
  EXPECT_EQ(empty.where.start, 15u) << "the comma before it is marked";
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

// The table of the shipped melodies. Lengths are counted in sixty-fourths of a whole note: the dot
// of a thirty-second is one.
constexpr int kWhole = 64;
constexpr int kQuarter = kWhole / 4;

// Names have no characters that are invalid in file names, addresses or RTTTL; pauses take neither
// dot nor octave.
const string kWord = R"([^().,:/\\?'&#=|"*<>\x01-\x1F\x7F ]+)";
const string kNote = R"((?:1|2|4|8|16|32)?(?:p|(?:[cdfga]#?|[eb])\.?[4-7]?))";
const std::regex kMelody(kWord + "(?: " + kWord + ")*" +
                         R"(:d=(?:1|2|4|8|16|32),o=[4-7],b=(?:[4-9]\d|1\d\d|2[0-3]\d|240):)" +
                         kNote + "(?:," + kNote + ")*");
const std::regex kMetre("([1-9]\\d?)/(1|2|4|8|16|32)");
const std::regex kUpbeat("(\\d\\d?)(?:/(1|2|4|8|16))?");
const std::regex kStem("[A-Za-z0-9_-]+");

// "3/8" as a multiple of `unit`; -1 for a text that is not a fraction.
int Fraction(const string& text, const std::regex& form, int unit) {
  std::smatch parts;
  return !std::regex_match(text, parts, form) ? -1
         : parts[2].matched                   ? std::stoi(parts[1]) * unit / std::stoi(parts[2])
                                              : std::stoi(parts[1]) * unit;
}

int Length(const core::RTTTLNote& note) {
  const int plain = kWhole / std::stoi(string(note.Duration));
  return plain + (note.Dotted ? plain / 2 : 0);
}

// Bars are complete and no note crosses a bar line; upbeat and last bar add up to one bar.
string BarFault(const core::NoteList& notes, int bar, int upbeat) {
  if (bar <= 0 || upbeat < 0 || upbeat >= bar) {
    return "metre and upbeat do not fit";
  }
  const int start = (bar - upbeat) % bar;
  int position = start;
  for (std::size_t i = 0; i < notes.size(); ++i) {
    position = position % bar + Length(notes[i]);
    if (position > bar) {
      return "note " + std::to_string(i + 1) + " crosses the end of a bar";
    }
  }
  return position % bar == start ? "" : "the last bar does not complete the melody";
}

// The notes fit in the three octaves around the two most used ones; rests last at most a whole
// note.
string PhoneFault(core::RTTTLMelody& melody) {
  const int lowest = formats::AutoOctave(melody, 2);
  int silence = 0;
  for (std::size_t i = 0; i < melody.Notes.size(); ++i) {
    const core::RTTTLNote& note = melody.Notes[i];
    const int octave = std::stoi(string(note.Octave));
    if (!core::IsPause(note) && (octave < lowest || octave > lowest + 2)) {
      return "note " + std::to_string(i + 1) + " falls outside the octaves of a phone";
    }
    silence = core::IsPause(note) ? silence + Length(note) : 0;
    if (silence > kWhole) {
      return "a silence is longer than a whole note";
    }
  }
  const bool fits = melody.Notes.size() >= 8 && melody.Notes.size() <= 50;
  return fits ? "" : std::to_string(melody.Notes.size()) + " notes";
}

// The fault of a row, "" if there is none.
string Fault(const data::ShelfRow& row) {
  if (!std::regex_match(row.stem, kStem) || (row.flags != "-" && !row.InRepertoire())) {
    return "bad stem or flag";
  }
  if (!std::regex_match(row.rtttl, kMelody)) {
    return "bad name, header or note";
  }
  core::RTTTLMelody melody = test::ParsedMelody(row.rtttl);
  const string fault = BarFault(melody.Notes, Fraction(row.metre, kMetre, kWhole),
                                Fraction(row.upbeat, kUpbeat, kQuarter));
  return fault.empty() ? PhoneFault(melody) : fault;
}

TEST(Shelf, HoldsMelodiesThatEveryPhoneTakes) {
  std::ifstream table(TONADEX_SHELF, std::ios::binary);
  const std::vector<data::ShelfRow> rows = data::ReadShelf(table);
  std::set<string> stems, names, keys;  // must be distinct even without regard to case
  for (const data::ShelfRow& row : rows) {
    EXPECT_EQ(Fault(row), "") << "line " << row.line;
    EXPECT_TRUE(stems.insert(core::ToLower(row.stem)).second) << row.stem;
    EXPECT_TRUE(names.insert(core::ToLower(row.Name())).second) << row.stem;
    EXPECT_TRUE(keys.insert(row.Name() + "." + std::to_string(row.rtttl.size())).second);
  }
  EXPECT_GE(rows.size(), 64u);
  EXPECT_GE(std::ranges::count_if(rows, &data::ShelfRow::InRepertoire), 30);
}

}  // namespace tonadex::phones::rtttl_test
