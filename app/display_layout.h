#pragma once

#include <cstddef>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

// A result on the phone's display: lines that tear no group apart, numbers at their margin, the
// mark on one group and type that fills its place. All texts are Windows-1252.
namespace tonadex::app {

struct TextRange {
  std::size_t from = 0, to = 0;

  bool empty() const { return from == to; }
  friend bool operator==(const TextRange&, const TextRange&) = default;
};

// A run of a result's text that is not to be torn apart at a line's end. Ranges in the result.
struct ResultGroup {
  TextRange text;  // without the blanks around it
  TextRange held;  // keys to be held down, "(…)" with its parentheses: set heavier; or empty

  friend bool operator==(const ResultGroup&, const ResultGroup&) = default;
};

// The groups of a result in order: split at blanks and line ends, and behind ","; where many notes
// stand without anything between them, each is a group.
std::vector<ResultGroup> ResultGroups(std::string_view result);

struct DisplayText {
  std::string text;                 // lines parted by LF
  std::vector<std::size_t> origin;  // where each character of `text`, and its end, stands in the
                                    // result
  std::vector<TextRange> groups;    // in `text`, in order
  std::vector<TextRange> held;      // set heavier
  std::vector<TextRange> margin;    // the numbers at the lines' beginnings

  friend bool operator==(const DisplayText&, const DisplayText&) = default;
};

// Lays the groups out in lines of at most `columns` characters. `counted` puts the number of a
// line's first group at its margin and begins the groups in columns. A group that no line can hold
// is broken where it must be.
DisplayText LayOutDisplay(std::string_view result, const std::vector<ResultGroup>& groups,
                          bool counted, std::size_t columns);

// How the arrow keys, Home, End and the page keys move the mark.
enum class Move { kPrevious, kNext, kUp, kDown, kLineBegin, kLineEnd, kFirst, kLast };

// The group that `move` marks after `marked` (-1 for none); -1 where there are no groups.
int MovedMark(const DisplayText& shown, int marked, Move move);

// What a toolkit measures of the display's type, in its own pixels.
struct TypeMeasure {
  double character = 1, line = 1;  // width and height
};

// What the display shows. Until someone chooses a size, the type is as large as the place allows,
// within limits.
class ResultDisplay {
 public:
  using Measure = std::function<TypeMeasure(int pixels)>;
  explicit ResultDisplay(Measure measure) : measure_(std::move(measure)) {}

  // True when the text has to be drawn anew.
  bool SetResult(std::string result, std::vector<ResultGroup> groups, bool counted);
  bool SetPlace(double width, double height);  // what is there for the text
  bool SetPixelSize(int pixels);               // what the user chooses
  bool LayOut();                               // after other type

  const std::string& result() const { return result_; }
  const DisplayText& shown() const { return shown_; }
  int PixelSize() const { return pixels_; }
  int ChosenPixelSize() const { return chosen_ ? pixels_ : 0; }
  // A sentence in the result's place and type.
  DisplayText Sentence(std::string_view words) const;
  // The part of the result that the characters of `range` show.
  std::string Part(TextRange range) const;

  int marked() const { return marked_; }  // a group, -1 for none
  // True when another group is marked now.
  bool Mark(int group);
  bool MarkAt(std::size_t position);  // the group at this character of the shown text

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
  int marked_ = -1;
};

}  // namespace tonadex::app
