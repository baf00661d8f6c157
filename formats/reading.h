#pragma once

#include <array>
#include <cstddef>
#include <initializer_list>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "core/rtttl.h"
#include "core/rtttl_writer.h"

// What the readers of file formats share. Texts are Windows-1252.
namespace tonadex::formats {

// Maximum number of notes and pauses of a melody: more than RTTTL can hold is refused.
inline constexpr std::size_t kMostNotes = 5000;

// Tempo of a melody whose format does not carry one.
inline constexpr int kAssumedTempo = 125;

struct Reading {
  core::PlainMelody melody;
  std::vector<std::string> remarks;  // Spanish sentences: what was assumed or could not be kept

  // Adds the sentence unless it is there already.
  void Remark(std::string_view sentence);
  void RemarkEndless();  // an endless repetition was written once
  // Sets the tempo to the number in `text`. For "" or a tempo that phones do not play it sets
  // `otherwise` and adds a remark.
  void SetTempo(std::string_view text, int otherwise);
};

// Throws core::RunTimeError (kInvalidArgument); the parts form its sentence.
[[noreturn]] void RefuseFile(std::initializer_list<std::string_view> parts);
[[noreturn]] void RefuseTooLong();  // for more than kMostNotes

// Reads from left to right and skips blanks and line ends before each character. Comparisons are
// exact, except for TakeWord.
class Scanner {
 public:
  explicit Scanner(std::string_view text, std::size_t at = 0) : text_(text), at_(at) {}

  bool AtEnd() { return Peek() == '\0'; }
  // Whether the last character taken is followed by a blank or by the end of the text.
  bool AtBlank();
  // NUL at the end; a NUL in the text reads as "?", which no format has.
  char Peek();
  char Next();
  bool Take(char c);
  bool TakeWord(std::string_view lowerCase);
  // Takes all successive occurrences of the character, without blanks in between; returns how many.
  int Run(char c);
  // Takes a number of at most four digits.
  std::optional<int> Number();
  // Throws a sentence with the line, the position in it, and the text found there.
  [[noreturn]] void Fail();

 private:
  std::string_view text_;
  std::size_t at_;
};

// The value of the first line "KEY:value" (`key` in upper case, with its separator), without blanks
// around it; "" when there is none. Ignores case.
std::string HeaderValue(std::string_view text, std::string_view key);

// Offset of the value in that line; npos when there is no such line.
std::size_t BehindKey(std::string_view text, std::string_view key);

// A natural's semitone above c, 0 to 11; nullopt for another letter than a to g.
std::optional<int> SemitoneOfLetter(char lowerCase);

// The note for a semitone above or below the octave's c. An octave outside 1 to 8 becomes the
// nearest one, with a remark.
core::PlainNote Pitch(int semitone, int octave, Reading& reading);

// The range of tempos that phones play; lengths at other tempos may overflow.
inline constexpr int kSlowestTempo = 25, kFastestTempo = 900;

inline constexpr core::PlainNote kPause = {};
inline constexpr double kWhole = 64;  // the unit of NoteLine is a sixty-fourth

// Length in sixty-fourths of 1/duration.
constexpr double LengthOf(int duration) {
  return kWhole / duration;
}

// The lengths of a note in RTTTL, the longest first.
struct NoteLength {
  int units;   // sixty-fourths
  int length;  // as PlainNote::length
  bool dotted;
};
inline constexpr auto kNoteLengths = [] {
  std::array<NoteLength, 2 * core::kLengths.size()> lengths;
  for (std::size_t i = 0; i < core::kLengths.size(); ++i) {
    const int plain = 64 / core::kLengths[i];
    lengths[2 * i] = {plain * 3 / 2, core::kLengths[i], true};
    lengths[2 * i + 1] = {plain, core::kLengths[i], false};
  }
  return lengths;
}();

// Whether one note, plain or dotted, has this length in sixty-fourths.
bool IsOneLength(int units);

enum class Modifier { kNone, kDotted, kDoubleDotted, kTwoThirds };
double Modified(double length, Modifier modifier);

// Appends notes of any length to a melody. A length that RTTTL lacks is written as the longest note
// that fits, and pauses for the rest. An end that no sum of lengths reaches is moved to the nearest
// thirty-second, counted from the beginning, so that errors do not add up.
class NoteLine {
 public:
  explicit NoteLine(Reading& reading) : reading_(reading) {}
  // `pitch` without a length; `length` in sixty-fourths. Throws beyond kMostNotes.
  void Add(core::PlainNote pitch, double length);

 private:
  void Append(core::PlainNote note);

  Reading& reading_;
  double exact_ = 0;
  int written_ = 0;
};

// Reads a text that consists of notes alone: calls `readOne` until its end.
template <typename ReadOne>
Reading ReadNotes(std::string_view text, ReadOne readOne) {
  Reading reading;
  reading.SetTempo({}, kAssumedTempo);
  NoteLine line(reading);
  Scanner in(text);
  while (!in.AtEnd()) {
    readOne(in, line, reading);
  }
  return reading;
}

}  // namespace tonadex::formats
