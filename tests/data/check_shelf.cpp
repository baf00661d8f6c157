// Checks the table of melodies: check_shelf SHELF
//
// Every fault is named with its line. Before that, rows that are broken on purpose must each be
// refused, so that a check that stopped looking is noticed. Exit codes: 0 all good, 1 faults, 2
// wrong arguments.

#include <algorithm>
#include <array>
#include <charconv>
#include <exception>
#include <fstream>
#include <functional>
#include <iostream>
#include <map>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <system_error>
#include <utility>
#include <vector>

#include "../../data/shelf.h"

namespace {

using tonadex::data::ShelfRow;
using tonadex::data::SplitAt;
using Faults = std::vector<std::string>;

constexpr std::size_t kLeastRows = 64;
constexpr std::size_t kLeastRepertoire = 30;
constexpr std::size_t kLeastNotes = 8;
constexpr std::size_t kMostNotes = 50;  // what the phones' composers hold
constexpr int kLowestOctave = 4;
constexpr int kHighestOctave = 7;
constexpr int kPhoneOctaves = 3;
constexpr int kSlowest = 40;  // beats per minute
constexpr int kFastest = 240;

// Lengths are counted in sixty-fourths of a whole note: the dot of a thirty-second is one.
constexpr int kWhole = 64;
constexpr int kQuarter = kWhole / 4;
constexpr int kLongestSilence = kWhole;  // a player's delta time holds little more

constexpr std::array kDurations = {1, 2, 4, 8, 16, 32};
constexpr std::string_view kStemCharacters =
    "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789-_";
// What file names, addresses or the form of a melody cannot hold.
constexpr std::string_view kNotInNames = "().,:/\\?'&#=|\"*<>";

struct Note {
  std::string pitch;  // "p" for a pause
  int length = 0;
  int octave = 0;  // a pause has the default octave, as the reader gives it
  bool IsPause() const { return pitch == "p"; }
};

struct Tune {
  int duration = 0;
  int octave = 0;
  std::vector<Note> notes;
};

std::optional<int> Number(std::string_view text) {
  int number = 0;
  const char* end = text.data() + text.size();
  const auto [stop, error] = std::from_chars(text.data(), end, number);
  if (text.empty() || error != std::errc() || stop != end || number < 0) {
    return std::nullopt;
  }
  return number;
}

bool IsDuration(int number) {
  return std::ranges::count(kDurations, number) > 0;
}

bool IsOctave(int number) {
  return number >= kLowestOctave && number <= kHighestOctave;
}

// "3/8" as a length; `unit` is the length of a whole.
std::optional<int> Fraction(std::string_view text, int unit) {
  const std::vector<std::string_view> parts = SplitAt(text, '/');
  const std::optional<int> above = Number(parts.front());
  const std::optional<int> below = parts.size() == 1 ? 1 : Number(parts[1]);
  if (parts.size() > 2 || !above || !below || *below == 0 || *above > kWhole ||
      unit % *below != 0) {
    return std::nullopt;
  }
  return *above * (unit / *below);
}

int TakeDigits(std::string_view& text) {
  const std::string_view digits =
      text.substr(0, std::min<std::size_t>(text.find_first_not_of("0123456789"), 3));
  text.remove_prefix(digits.size());
  return Number(digits).value_or(0);
}

bool TakeMark(std::string_view& text, char mark) {
  const bool found = text.starts_with(mark);
  text.remove_prefix(found ? 1 : 0);
  return found;
}

// [duration] letter ["#"] ["."] [octave], in this order; a pause is "p" with a duration alone.
// Gives what is wrong with it, "" when nothing is.
std::string ParseNote(std::string_view text, const Tune& tune, Note& note) {
  const bool ownDuration = !text.empty() && text.front() >= '0' && text.front() <= '9';
  const int duration = ownDuration ? TakeDigits(text) : tune.duration;
  if (!IsDuration(duration)) {
    return "has no valid duration";
  }
  note.pitch = text.substr(0, 1);
  text.remove_prefix(note.pitch.size());
  if (note.pitch.empty() || std::string_view("cdefgabp").find(note.pitch) == std::string::npos) {
    return "has no note letter";
  }
  const bool sharp = TakeMark(text, '#');
  if (sharp && std::string_view("ebp").find(note.pitch) != std::string::npos) {
    return "cannot be sharp";
  }
  note.pitch += sharp ? "#" : "";
  const bool dotted = TakeMark(text, '.');
  note.length = kWhole / duration + (dotted ? kWhole / duration / 2 : 0);
  note.octave = text.empty() ? tune.octave : TakeDigits(text);
  if (!text.empty() || !IsOctave(note.octave)) {
    return "does not end after the octave, or the octave is not 4 to 7";
  }
  return note.IsPause() && dotted ? "is a dotted pause" : "";
}

std::optional<int> HeaderValue(std::string_view item, std::string_view key) {
  return item.starts_with(key) ? Number(item.substr(key.size())) : std::nullopt;
}

void CheckName(std::string_view name, Faults& faults) {
  const bool controls = std::any_of(name.begin(), name.end(), [](char c) {
    return static_cast<unsigned char>(c) < 0x20 || static_cast<unsigned char>(c) == 0x7F;
  });
  if (name.empty() || controls || name.find_first_of(kNotInNames) != std::string_view::npos) {
    faults.push_back("the name is empty or holds one of " + std::string(kNotInNames));
  }
  if (name.starts_with(' ') || name.ends_with(' ') || name.find("  ") != std::string_view::npos) {
    faults.emplace_back("the name holds a blank at an end, or two together");
  }
}

std::optional<Tune> ParseTune(const ShelfRow& row, Faults& faults) {
  const std::vector<std::string_view> sections = SplitAt(row.rtttl, ':');
  if (sections.size() != 3) {
    faults.emplace_back("the melody needs three sections");
    return std::nullopt;
  }
  CheckName(sections[0], faults);
  const std::vector<std::string_view> header = SplitAt(sections[1], ',');
  Tune tune;
  tune.duration = header.size() == 3 ? HeaderValue(header[0], "d=").value_or(0) : 0;
  tune.octave = header.size() == 3 ? HeaderValue(header[1], "o=").value_or(0) : 0;
  const int tempo = header.size() == 3 ? HeaderValue(header[2], "b=").value_or(0) : 0;
  if (!IsDuration(tune.duration) || !IsOctave(tune.octave) || tempo < kSlowest ||
      tempo > kFastest) {
    faults.emplace_back("the header is not \"d=..,o=..,b=..\" with usual values");
    return std::nullopt;
  }
  for (const std::string_view text : SplitAt(sections[2], ',')) {
    Note note;
    if (const std::string why = ParseNote(text, tune, note); !why.empty()) {
      faults.push_back("note \"" + std::string(text) + "\" " + why);
      return std::nullopt;
    }
    tune.notes.push_back(note);
  }
  return tune;
}

// Whole bars, no note across a bar line; upbeat and last bar are one bar together.
void CheckBars(const Tune& tune, const ShelfRow& row, Faults& faults) {
  const std::optional<int> bar = Fraction(row.metre, kWhole);
  const std::optional<int> upbeat = Fraction(row.upbeat, kQuarter);
  if (!bar || *bar == 0 || !upbeat || *upbeat >= *bar) {
    faults.push_back("metre \"" + row.metre + "\" and upbeat \"" + row.upbeat + "\" do not fit");
    return;
  }
  const int start = (*bar - *upbeat) % *bar;
  int position = start;
  int number = start == 0 ? 1 : 0;
  for (const Note& note : tune.notes) {
    position += note.length;
    if (position > *bar) {
      faults.push_back("a note crosses the end of bar " + std::to_string(number));
      return;
    }
    if (position == *bar) {
      position = 0;
      ++number;
    }
  }
  if (position != start) {
    faults.emplace_back("the last bar does not complete the melody");
  }
}

// The lowest of the three octaves that a phone plays: around the two that occur most, the higher
// one of equals; pauses count.
int LowestPhoneOctave(const Tune& tune) {
  std::map<int, int> counts;
  for (const Note& note : tune.notes) {
    ++counts[note.octave];
  }
  std::vector<std::pair<int, int>> order;
  order.reserve(counts.size());
  for (const auto& [octave, count] : counts) {
    order.emplace_back(count, octave);
  }
  std::ranges::sort(order, std::greater());
  const int first = order.front().second;
  const int second = order.size() > 1 ? order[1].second : first;
  return (first + second + 1) / 2 - 1;
}

void CheckOctaves(const Tune& tune, Faults& faults) {
  const int lowest = LowestPhoneOctave(tune);
  for (const Note& note : tune.notes) {
    if (!note.IsPause() && (note.octave < lowest || note.octave >= lowest + kPhoneOctaves)) {
      faults.push_back("octave " + std::to_string(note.octave) + " falls outside the three from " +
                       std::to_string(lowest) + " that a phone would choose");
      return;
    }
  }
}

void CheckAmount(const Tune& tune, Faults& faults) {
  if (tune.notes.size() < kLeastNotes || tune.notes.size() > kMostNotes) {
    faults.push_back(std::to_string(tune.notes.size()) + " notes");
  }
  int silence = 0;
  for (const Note& note : tune.notes) {
    silence = note.IsPause() ? silence + note.length : 0;
    if (silence > kLongestSilence) {
      faults.emplace_back("a silence is longer than a whole note");
      return;
    }
  }
}

Faults RowFaults(const ShelfRow& row) {
  Faults faults;
  if (row.stem.empty() || row.stem.find_first_not_of(kStemCharacters) != std::string::npos) {
    faults.emplace_back("the stem needs ASCII letters, figures, \"-\" or \"_\"");
  }
  if (row.flags != "-" && !row.InRepertoire()) {
    faults.push_back("unknown flag \"" + row.flags + "\"");
  }
  if (row.rtttl.size() > 99'999) {
    faults.emplace_back("the file's number has more than five digits");
  }
  if (const std::optional<Tune> tune = ParseTune(row, faults)) {
    CheckBars(*tune, row, faults);
    CheckOctaves(*tune, faults);
    CheckAmount(*tune, faults);
  }
  return faults;
}

std::string LowerAscii(std::string text) {
  for (char& c : text) {
    c = c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
  }
  return text;
}

// Files, melody names and the servers' keys "name.number" are all different.
void CheckDifferent(const std::vector<ShelfRow>& rows, Faults& faults) {
  std::set<std::string> stems, names, keys;
  for (const ShelfRow& row : rows) {
    const std::string key = row.Name() + "." + std::to_string(row.rtttl.size());
    const std::array fresh = {stems.insert(LowerAscii(row.stem)).second,
                              names.insert(LowerAscii(row.Name())).second, keys.insert(key).second};
    if (std::ranges::count(fresh, false) > 0) {
      faults.push_back("line " + std::to_string(row.line) + " (" + row.stem +
                       "): the stem, the name or the key is used twice");
    }
  }
}

Faults ShelfFaults(const std::vector<ShelfRow>& rows) {
  Faults faults;
  for (const ShelfRow& row : rows) {
    for (const std::string& fault : RowFaults(row)) {
      faults.push_back("line " + std::to_string(row.line) + " (" + row.stem + "): " + fault);
    }
  }
  CheckDifferent(rows, faults);
  const auto repertoire = std::count_if(rows.begin(), rows.end(),
                                        [](const ShelfRow& row) { return row.InRepertoire(); });
  if (rows.size() < kLeastRows || static_cast<std::size_t>(repertoire) < kLeastRepertoire) {
    faults.push_back("only " + std::to_string(rows.size()) + " melodies, " +
                     std::to_string(repertoire) + " of them in the repertoire");
  }
  return faults;
}

constexpr std::string_view kGoodRow =
    "a | 4/4 | 1 | - | A:d=4,o=5,b=120:c,c,d,e,f,g,a.,8p,b,c.6,8d,p";

struct BrokenRow {
  std::string_view row;
  std::string_view fault;  // what one of its faults says
};

constexpr auto kBrokenRows = std::to_array<BrokenRow>({
    {"a | 3/4 | 1 | - | A:d=4,o=5,b=120:c,c,d,e,f,g,a.,8p,b,c.6,8d,p", "crosses the end of bar"},
    {"a | 4/4 | 1 | - | A:d=4,o=5,b=120:c,c,d,e,f,g,a.,8p,b,c.6,8d", "does not complete"},
    {"a | 4/4 | 1 | - | A:d=4,o=5,b=120:c,c,d,e#,f,g,a.,8p,b,c.6,8d,p", "cannot be sharp"},
    {"a | 4/4 | 1 | - | A:d=4,o=5,b=120:c4,c,d,e,f,g,a.,8p,b,c.7,8d,p", "falls outside"},
    {"a.b | 4/4 | 1 | - | A:d=4,o=5,b=12:c,c,c,c", "the header is not"},
});

// The broken rows that pass all the same, and the good one when it does not.
Faults OwnFaults() {
  const ShelfRow good = tonadex::data::ParseShelfRow(kGoodRow, 0);
  Faults faults = RowFaults(good);
  const auto check = [&](const Faults& found, std::string_view words) {
    if (std::ranges::none_of(found, [&](const std::string& fault) {
          return fault.find(words) != std::string::npos;
        })) {
      faults.push_back("the check lets pass: " + std::string(words));
    }
  };
  for (const BrokenRow& broken : kBrokenRows) {
    check(RowFaults(tonadex::data::ParseShelfRow(broken.row, 0)), broken.fault);
  }
  check(ShelfFaults({good, good}), "used twice");
  check(ShelfFaults({good}), "only 1 melodies");
  return faults;
}

int Report(const Faults& faults) {
  for (const std::string& fault : faults) {
    std::cerr << fault << '\n';
  }
  return faults.empty() ? 0 : 1;
}

}  // namespace

int main(int argc, char** argv) {
  if (argc != 2) {
    std::cerr << "use: check_shelf SHELF\n";
    return 2;
  }
  try {
    std::ifstream table(argv[1], std::ios::binary);
    if (!table) {
      return Report({std::string("cannot open ") + argv[1]});
    }
    const std::vector<ShelfRow> rows = tonadex::data::ReadShelf(table);
    std::cout << rows.size() << " melodies\n";
    const int own = Report(OwnFaults());
    return std::max(own, Report(ShelfFaults(rows)));
  } catch (const std::exception& error) {
    return Report({error.what()});
  }
}
