// The table of the shipped melodies: each is well formed and fits every phone.
#include "data/shelf.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <fstream>
#include <regex>
#include <set>
#include <string>

#include "core/text.h"
#include "formats/octave_range.h"
#include "tests/core/test_melody.h"

namespace tonadex::data {
namespace {

using std::string;

// Lengths are counted in sixty-fourths of a whole note: the dot of a thirty-second is one.
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
string Fault(const ShelfRow& row) {
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
  const std::vector<ShelfRow> rows = ReadShelf(table);
  std::set<string> stems, names, keys;  // must be distinct even without regard to case
  for (const ShelfRow& row : rows) {
    EXPECT_EQ(Fault(row), "") << "line " << row.line;
    EXPECT_TRUE(stems.insert(core::ToLower(row.stem)).second) << row.stem;
    EXPECT_TRUE(names.insert(core::ToLower(row.Name())).second) << row.stem;
    EXPECT_TRUE(keys.insert(row.Name() + "." + std::to_string(row.rtttl.size())).second);
  }
  EXPECT_GE(rows.size(), 64u);
  EXPECT_GE(std::ranges::count_if(rows, &ShelfRow::InRepertoire), 30);
}

}  // namespace
}  // namespace tonadex::data
