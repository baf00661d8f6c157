#pragma once

#include <algorithm>
#include <cstddef>
#include <initializer_list>
#include <string>
#include <string_view>
#include <vector>

// Checked text helpers. Texts are Windows-1252, positions count from 1, comparisons are binary.
namespace tonadex::core {

inline constexpr std::string_view kCrLf = "\r\n";

// Maximum number of parts; SplitText throws beyond it.
inline constexpr std::size_t kMaxParts = 5001;
// Maximum distance of a separator, in characters.
inline constexpr std::size_t kMaxPosition = 32767;

// A range of characters; an empty one marks a position.
struct TextRange {
  std::size_t start = 0, length = 0;  // 0-based, in characters

  friend bool operator==(const TextRange&, const TextRange&) = default;
};

// The character's code, 0 to 255.
constexpr unsigned char Code(char c) {
  return static_cast<unsigned char>(c);
}

constexpr bool IsDigit(char c) {
  return c >= '0' && c <= '9';
}

// Upper and lower case follow Windows-1252, accented letters included, in every locale.
char ToLower(char c);
char ToUpper(char c);
std::string ToLower(std::string_view text);
std::string ToUpper(std::string_view text);
// Lower case without accents, of the same length: the key for comparing names.
std::string Fold(std::string_view text);

// The first `count` characters, or the whole of a shorter text. Errors: invalid argument for a
// negative count.
std::string_view Left(std::string_view text, std::ptrdiff_t count);
// The last `count` characters, or the whole of a shorter text. Errors: invalid argument for a
// negative count.
std::string_view Right(std::string_view text, std::ptrdiff_t count);
// The text from 1-based position `start` on, "" past its end. Errors: invalid argument for a start
// below 1.
std::string_view Mid(std::string_view text, std::ptrdiff_t start);
// 1-based position of the first `what` at or after `start`, 0 when not found. An empty `what` is
// found at `start`. Errors: invalid argument for a start below 1.
std::ptrdiff_t InStr(std::string_view text, std::string_view what, std::ptrdiff_t start = 1);
// As InStr, but a position past 32767 is an overflow error.
std::ptrdiff_t InStr16(std::string_view text, char what);
bool Contains(std::string_view text, std::string_view what);
// Without the given characters at both ends.
std::string_view Trim(std::string_view text, std::string_view characters = " ");

// Splits at each delimiter. An empty text has one empty part; a trailing delimiter adds an empty
// part. Whenever the remaining text starts with the delimiter, part 0 is set to "" ("a,,b" returns
// "", "", "b"): kept, because it decides which stored melodies are accepted. Errors: subscript
// beyond kMaxParts parts, overflow for a delimiter further than 32767 characters into the remaining
// text.
std::vector<std::string_view> SplitText(std::string_view text, char delimiter);

// The first and the last part of SplitText, equal when the delimiter is missing. Errors: as
// SplitText.
struct TextEnds {
  std::string_view front, back;
};
TextEnds SplitEnds(std::string_view text, char delimiter);

// Calls `use` with every piece, empty ones too, between characters of `separators`.
template <typename Use>
void ForEachPiece(std::string_view text, std::string_view separators, Use use) {
  for (std::size_t start = 0; start <= text.size();) {
    const std::size_t end = std::min(text.find_first_of(separators, start), text.size());
    use(text.substr(start, end - start));
    start = end + 1;
  }
}

// Concatenates the parts.
std::string Joined(std::initializer_list<std::string_view> parts);

// "1 nota", "3 notas"
std::string Counted(std::size_t count, std::string_view one, std::string_view many);

// Replaces every occurrence in place, from left to right, in one pass; an empty `what` changes
// nothing. Returns `text`.
const std::string& ReplaceAll(std::string& text, std::string_view what,
                              std::string_view replacement);

}  // namespace tonadex::core
