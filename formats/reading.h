#pragma once

#include <cstddef>
#include <initializer_list>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

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

  // Each sentence once.
  void Remark(std::string_view sentence);
  // The tempo, or for "" and a number that phones do not know the given one, with a remark.
  void SetTempo(std::string_view text, int otherwise);
};

// The parts of a sentence as one text.
std::string Joined(std::initializer_list<std::string_view> parts);

// Throws core::RunTimeError (kInvalidArgument) with a sentence of these parts.
[[noreturn]] void RefuseFile(std::initializer_list<std::string_view> parts);
[[noreturn]] void RefuseTooLong();  // for more than kMostNotes

// Reads from left to right and skips blanks and line ends before each character. Comparisons are
// exact, except for TakeWord.
class Scanner {
 public:
  explicit Scanner(std::string_view text, std::size_t at = 0) : text_(text), at_(at) {}

  bool AtEnd() { return Peek() == '\0'; }
  // Whether a blank or the end of the text separates what was taken last from what follows.
  bool AtBlank();
  // NUL at the end; a NUL in the text reads as "?", which no format has.
  char Peek();
  char Next();
  bool Take(char c);
  bool TakeWord(std::string_view lowerCase);
  // How many of the same character follow, without blanks between them; takes them.
  int Run(char c);
  // Takes a number of at most four digits.
  std::optional<int> Number();
  // Throws a sentence with the line, the position and what stands there.
  [[noreturn]] void Fail();

 private:
  std::string_view text_;
  std::size_t at_;
};

// The value of the first line "KEY:value" (`key` in upper case, with its separator), without blanks
// around it; "" when there is none. Ignores case.
std::string HeaderValue(std::string_view text, std::string_view key);

// Offset behind the key of that line; npos when there is none.
std::size_t BehindKey(std::string_view text, std::string_view key);

// A natural's semitone above c, 0 to 11; nullopt for another letter than a to g.
std::optional<int> SemitoneOfLetter(char lowerCase);

// A note of any accidental and octave as RTTTL can have it; an octave out of range is moved to the
// nearest with a remark.
core::PlainNote Pitch(int semitone, int octave, Reading& reading);

inline constexpr core::PlainNote kPause = {};
inline constexpr double kWhole = 64;  // the unit of NoteLine is a sixty-fourth

// Length in sixty-fourths of 1/duration.
constexpr double LengthOf(int duration) {
  return kWhole / duration;
}

// Whether one note, plain or dotted, has this length in sixty-fourths.
bool IsOneLength(int units);

enum class Modifier { kNone, kDotted, kDoubleDotted, kTwoThirds };
double Modified(double length, Modifier modifier);

// Appends notes of any length to a melody. A note that RTTTL cannot write is as long as the longest
// one below it, and the rest is a pause. What no sum of lengths matches is moved to the next
// thirty-second; the errors do not add up.
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

}  // namespace tonadex::formats
