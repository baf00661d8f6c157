#include "app/display_layout.h"

#include <algorithm>
#include <utility>

#include "app/look.h"

namespace tonadex::app {
namespace {

constexpr std::string_view kBlanks = " \t\r\n";
constexpr std::size_t kMarginGap = 2, kColumnGap = 2;
constexpr std::size_t kSpareRoom = 8;  // wider columns may cost this fraction (1/8) of the room
constexpr std::size_t kWholeRun = 16;  // a longer run of characters is split between notes
constexpr int kSmallestFit = 20, kLargestFit = 36,
              kFitStep = 2;  // pixels, until the user chooses

std::size_t SizeOf(const ResultGroup& group) {
  return group.text.to - group.text.from;
}

// The width of the columns including their gap. At least two thirds of the groups fit into one
// column; a longer group takes several, which is hard to follow. Returns the widest column that
// needs little more room than the most compact one.
std::size_t ColumnWidth(const std::vector<ResultGroup>& groups) {
  std::vector<std::size_t> sizes(groups.size());
  std::ranges::transform(groups, sizes.begin(), SizeOf);
  std::ranges::sort(sizes);
  std::size_t best = 0, least = std::string::npos;
  for (std::size_t i = sizes.size() * 2 / 3; i < sizes.size(); ++i) {
    const std::size_t width = sizes[i] + kColumnGap;
    std::size_t room = 0;
    for (const std::size_t size : sizes) {
      room += (size + kColumnGap + width - 1) / width * width;
    }
    least = std::min(least, room);
    best = room <= least + least / kSpareRoom ? width : best;
  }
  return best;
}

class Layouter {
 public:
  Layouter(std::string_view result, bool counted, const std::vector<ResultGroup>& groups,
           std::size_t columns)
      : result_(result),
        margin_(counted ? std::to_string(groups.size()).size() : 0),
        cell_(counted ? ColumnWidth(groups) : 0),
        columns_(std::max(columns, margin_ + kMarginGap + 1)) {}

  void Add(const ResultGroup& group) {
    PutGap(group.text.from, SizeOf(group));
    if (margin_ > 0 && column_ == 0) {
      PutNumber(group.text.from);
    }
    PutGroup(group);
  }

  DisplayText Finish() {
    PutGap(result_.size(), 0);
    shown_.origin.push_back(result_.size());
    return std::move(shown_);
  }

 private:
  void Put(char c, std::size_t origin) {
    shown_.text += c;
    shown_.origin.push_back(origin);
    column_ = c == '\n' ? 0 : column_ + 1;
  }

  // Adds what separates the groups in the result up to `end`: its line ends, or a line break if the
  // next group, of `room` characters, does not fit, or blanks.
  void PutGap(std::size_t end, std::size_t room) {
    const std::string_view gap = result_.substr(at_, end - at_);
    std::size_t width = gap.size();
    if (cell_ > 0 && column_ > 0 && !gap.empty() && room > 0) {  // to the next column
      const std::size_t used = column_ - std::min(column_, margin_ + kMarginGap);
      width = (used + kColumnGap + cell_ - 1) / cell_ * cell_ - used;
    }
    if (gap.find_first_of("\r\n") != std::string_view::npos) {
      std::size_t origin = at_;  // blanks before a line end belong to it
      for (std::size_t i = 0; i < gap.size(); ++i) {
        if (gap[i] == '\r' || (gap[i] == '\n' && (i == 0 || gap[i - 1] != '\r'))) {
          Put('\n', origin);
          origin = at_ + i + (gap.substr(i).starts_with("\r\n") ? 2 : 1);
        }
      }
    } else if (column_ > 0 && room > 0 && column_ + width + room > columns_) {
      Put('\n', at_);
    } else {
      for (std::size_t i = 0; i < width; ++i) {
        Put(' ', std::min(at_ + i, end));
      }
    }
    at_ = end;
  }

  void PutNumber(std::size_t origin) {
    const std::string number = std::to_string(shown_.groups.size() + 1);
    const std::size_t from = shown_.text.size();
    for (const char c :
         std::string(margin_ - number.size(), ' ') + number + std::string(kMarginGap, ' ')) {
      Put(c, origin);
    }
    shown_.margin.push_back({from, shown_.text.size()});
  }

  void PutGroup(const ResultGroup& group) {
    const std::size_t from = shown_.text.size();
    std::size_t heldFrom = from;
    for (; at_ < group.text.to; ++at_) {
      if (column_ >= columns_) {
        Put('\n', at_);
      }
      if (at_ == group.held.from) {
        heldFrom = shown_.text.size();
      }
      Put(result_[at_], at_);
      if (!group.held.empty() && at_ + 1 == group.held.to) {
        shown_.held.push_back({heldFrom, shown_.text.size()});
      }
    }
    shown_.groups.push_back({from, shown_.text.size()});
  }

  std::string_view result_;
  std::size_t margin_, cell_, columns_;  // 0: no numbers, no columns
  DisplayText shown_;
  std::size_t at_ = 0;  // how far the result is laid out
  std::size_t column_ = 0;
};

// Index in the shown text of the beginning of a group's line.
std::size_t LineOf(const DisplayText& shown, int group) {
  const std::size_t from = shown.groups[static_cast<std::size_t>(group)].from;
  return from == 0 ? 0 : shown.text.rfind('\n', from - 1) + 1;  // npos + 1 is 0
}

std::size_t ColumnOf(const DisplayText& shown, int group) {
  return shown.groups[static_cast<std::size_t>(group)].from - LineOf(shown, group);
}

bool IsLetter(std::string_view text, std::size_t at) {
  return at < text.size() && ((text[at] | 0x20) >= 'a') && ((text[at] | 0x20) <= 'z');
}

// Length of the first note of a run without blanks: "*4#c3.", "C#-3", "+G". A "#" or "-" that
// precedes a letter begins the next note.
std::size_t NoteEnd(std::string_view run) {
  bool letter = false;
  std::size_t at = run.substr(0, kWholeRun).find(':') + 1;  // after "MELODY:"; 0 without it
  for (; at < run.size(); ++at) {
    const char c = run[at];
    const bool leads = c == '*' || c == '+' || ((c == '#' || c == '-') && IsLetter(run, at + 1));
    if (letter && (leads || IsLetter(run, at))) {
      break;
    }
    letter = letter || IsLetter(run, at);
  }
  return at;
}

// Whether a run without blanks consists of many notes, maybe after a word such as "MELODY:".
bool IsNotes(std::string_view run) {
  constexpr std::string_view kNotes = "abcdefghprABCDEFGHPR0123456789*+#-&.:;";
  return run.size() > kWholeRun && run.find_first_not_of(kNotes, run.find(':') + 1) == run.npos;
}

}  // namespace

std::vector<ResultGroup> ResultGroups(std::string_view result) {
  std::vector<ResultGroup> groups;
  std::size_t at = result.find_first_not_of(kBlanks);
  while (at < result.size()) {
    std::size_t end = std::min(result.find_first_of(" \t\r\n,", at), result.size());
    end += result.substr(end).starts_with(',') ? std::size_t{1} : 0;
    const bool notes = IsNotes(result.substr(at, end - at));
    while (at < end) {
      const std::string_view run = result.substr(at, end - at);
      const std::size_t size = notes ? NoteEnd(run) : run.size();
      const std::string_view text = run.substr(0, size);
      const std::size_t open = text.find('('), close = text.find(')');
      const bool held = open < close && close < text.size();
      groups.push_back(
          {{at, at + size}, held ? TextRange{at + open, at + close + 1} : TextRange{}});
      at += size;
    }
    at = result.find_first_not_of(kBlanks, end);
  }
  return groups;
}

DisplayText LayOutDisplay(std::string_view result, const std::vector<ResultGroup>& groups,
                          bool counted, std::size_t columns) {
  Layouter layouter(result, counted, groups, columns);
  for (const ResultGroup& group : groups) {
    layouter.Add(group);
  }
  return layouter.Finish();
}

int MovedMark(const DisplayText& shown, int marked, Move move) {
  const int last = static_cast<int>(shown.groups.size()) - 1;
  if (move == Move::kLast || last < 0 || (marked < 0 && move == Move::kPrevious)) {
    return last;
  }
  if (move == Move::kFirst || marked < 0) {
    return 0;
  }
  const auto sameLine = [&](int a, int b) { return LineOf(shown, a) == LineOf(shown, b); };
  const std::size_t column = ColumnOf(shown, marked);
  int first = marked, end = marked;
  while (first > 0 && sameLine(first - 1, marked)) {
    --first;
  }
  while (end < last && sameLine(end + 1, marked)) {
    ++end;
  }
  int group = marked;
  switch (move) {
    case Move::kPrevious:
      return std::max(marked - 1, 0);
    case Move::kNext:
      return std::min(marked + 1, last);
    case Move::kLineBegin:
      return first;
    case Move::kLineEnd:
      return end;
    case Move::kUp:
      for (group = first - 1;
           group > 0 && sameLine(group - 1, group) && ColumnOf(shown, group) > column;) {
        --group;
      }
      return group < 0 ? marked : group;
    case Move::kDown:
      for (group = end + 1;
           group < last && sameLine(group + 1, group) && ColumnOf(shown, group + 1) <= column;) {
        ++group;
      }
      return group > last ? marked : group;
    default:
      return marked;
  }
}

bool ResultDisplay::SetResult(std::string result, std::vector<ResultGroup> groups, bool counted) {
  result_ = std::move(result);
  groups_ = std::move(groups);
  counted_ = counted && !groups_.empty();
  return LayOut();
}

bool ResultDisplay::SetPlace(double width, double height) {
  const bool same = width == std::exchange(width_, width);
  return height == std::exchange(height_, height) && same ? false : LayOut();
}

bool ResultDisplay::SetPixelSize(int pixels) {
  const int wanted = std::clamp(pixels, look::kSmallestType, look::kLargestType);
  if (wanted == pixels_) {
    return false;
  }
  pixels_ = wanted;
  chosen_ = true;
  return LayOut();
}

bool ResultDisplay::LayOut() {
  const DisplayText before = std::move(shown_);
  const int pixelsBefore = pixels_;
  const bool fitted = !chosen_ && !result_.empty();
  for (pixels_ = fitted ? kLargestFit : pixels_;; pixels_ -= kFitStep) {
    const TypeMeasure type = measure_(pixels_);
    shown_ = LayOutDisplay(result_, groups_, counted_, ColumnsOf(type));
    const auto lines = 1 + std::ranges::count(shown_.text, '\n');
    if (!fitted || pixels_ <= kSmallestFit || static_cast<double>(lines) * type.line <= height_) {
      break;
    }
  }
  const bool changed = shown_ != before || pixels_ != pixelsBefore;
  marked_ = changed ? -1 : marked_;
  return changed;
}

std::size_t ResultDisplay::ColumnsOf(const TypeMeasure& type) const {
  return static_cast<std::size_t>(std::max(1.0, width_ / type.character));
}

DisplayText ResultDisplay::Sentence(std::string_view words) const {
  return LayOutDisplay(words, ResultGroups(words), false, ColumnsOf(measure_(pixels_)));
}

std::string ResultDisplay::Part(TextRange range) const {
  const std::size_t last = shown_.origin.empty() ? 0 : shown_.origin.size() - 1;
  if (std::min(range.from, last) >= std::min(range.to, last)) {
    return {};
  }
  const std::size_t from = shown_.origin[range.from];
  return result_.substr(from, shown_.origin[std::min(range.to, last)] - from);
}

bool ResultDisplay::Mark(int group) {
  return std::exchange(marked_, group) != group;
}

bool ResultDisplay::MarkAt(std::size_t position) {
  const auto next = std::ranges::upper_bound(shown_.groups, position, {}, &TextRange::from);
  const bool within = next != shown_.groups.begin() && position <= std::prev(next)->to;
  return Mark(within ? static_cast<int>(next - shown_.groups.begin()) - 1 : -1);
}

}  // namespace tonadex::app
