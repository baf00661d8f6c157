#pragma once

#include <cstddef>
#include <functional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

// A result as the phone's display shows it: lines broken between groups, numbered at the margin,
// one group marked, in a font size that fills the display. All texts are Windows-1252.
namespace tonadex::app {

struct TextRange {
  std::size_t from = 0, to = 0;

  bool empty() const { return from == to; }
  friend bool operator==(const TextRange&, const TextRange&) = default;
};

// A part of a result that a line break should not split. Both ranges index the result's text.
struct ResultGroup {
  TextRange text;  // without the blanks around it
  TextRange held;  // keys to be held down, "(…)" with the parentheses, drawn bold; or empty

  friend bool operator==(const ResultGroup&, const ResultGroup&) = default;
};

// The groups of a result in order, separated by blanks, line ends and commas (which end a group).
// In a long run of notes without separators each note is a group.
std::vector<ResultGroup> ResultGroups(std::string_view result);

struct DisplayText {
  std::string text;                 // lines separated by LF
  std::vector<std::size_t> origin;  // for each character of `text` and its end: index in the result
  std::vector<TextRange> groups;    // in `text`, in order
  std::vector<TextRange> held;      // drawn bold
  std::vector<TextRange> margin;    // the numbers at the beginnings of the lines

  friend bool operator==(const DisplayText&, const DisplayText&) = default;
};

// Lays out the groups in lines of at most `columns` characters. If `counted`, each line begins with
// the number of its first group, and the groups are aligned in columns. Only a group that is longer
// than a line is split.
DisplayText LayOutDisplay(std::string_view result, const std::vector<ResultGroup>& groups,
                          bool counted, std::size_t columns);

// The movements of the mark by arrow keys, Home, End (in the line) and the page keys.
enum class Move { kPrevious, kNext, kUp, kDown, kLineBegin, kLineEnd, kFirst, kLast };

// The group that `move` marks after `marked` (-1 for none); -1 where there are no groups.
int MovedMark(const DisplayText& shown, int marked, Move move);

// Measures of the display's font, in the toolkit's pixels.
struct TypeMeasure {
  double character = 1, line = 1;  // width and height
};

// The state of the display. Until the user chooses a font size, it is the largest one, within
// limits, at which the whole result is visible.
class ResultDisplay {
 public:
  using Measure = std::function<TypeMeasure(int pixels)>;
  explicit ResultDisplay(Measure measure) : measure_(std::move(measure)) {}

  // These return true if the text must be redrawn.
  bool SetResult(std::string result, std::vector<ResultGroup> groups, bool counted);
  bool SetPlace(double width, double height);  // the text's area, in the toolkit's pixels
  bool SetPixelSize(int pixels);               // the user's choice
  bool LayOut();                               // after the font has changed

  const std::string& result() const { return result_; }
  const DisplayText& shown() const { return shown_; }
  int PixelSize() const { return pixels_; }
  int ChosenPixelSize() const { return chosen_ ? pixels_ : 0; }
  // A sentence laid out like a result, in the present font size.
  DisplayText Sentence(std::string_view words) const;
  // The part of the result that `range` of the shown text stands for.
  std::string Part(TextRange range) const;

  int marked() const { return marked_; }  // a group, -1 for none
  // These return true if another group is marked now.
  bool Mark(int group);
  bool MarkAt(std::size_t position);  // the group at this index of the shown text
  // Marks the group that sounds, -1 for none; only a change moves a mark that the user has set.
  bool Follow(int group) { return std::exchange(followed_, group) != group && Mark(group); }

 private:
  std::size_t ColumnsOf(const TypeMeasure& type) const;

  Measure measure_;
  std::string result_;
  std::vector<ResultGroup> groups_;
  bool counted_ = false;
  double width_ = 0, height_ = 0;
  int pixels_ = 20;
  bool chosen_ = false;
  DisplayText shown_;
  int marked_ = -1, followed_ = -1;
};

}  // namespace tonadex::app
