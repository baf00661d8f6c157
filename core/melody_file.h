#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

// Melody files "stem.number" and their rows in the repertoire list.
namespace tonadex::core {

// Escape for "#" in requests and stored melodies, because "#" starts the fragment of a URL.
inline constexpr std::string_view kSharpEscape = "juh9hay";

// Replaces every kSharpEscape by "#".
std::string UndoSharpEscape(std::string_view text);

// Maximum length of a melody's line, in bytes; phones accept a thousandth of that.
inline constexpr std::size_t kMaxLineBytes = std::size_t{1} << 20;

// The name in a stored melody's first line: up to the first ":", without blanks, except that the
// second of two successive blanks stays. Example: "Mi vals:d=4…" gives "Mivals".
std::string ScanName(std::string_view line);

// Cuts off a number of up to five digits: the text before the first full stop at or after position
// (length - 5). Errors: invalid argument when there is no such full stop.
std::string_view CutNumber(std::string_view text);

// 0-based offset at which CutNumber cuts; npos when there is no such full stop.
std::size_t NumberStop(std::string_view text);

// The number of a file in `name (file name`: the text after the first full stop. Errors: type
// mismatch when that text is empty or not a number.
std::int32_t FileNumber(std::string_view formed);

// The stem in `name (file name`. Errors: those of CutNumber.
std::string_view FormedStem(std::string_view formed, std::string_view name);

// "name (stem)", or the stem alone when both are equal.
std::string RowText(std::string_view name, std::string_view stem);

struct MelodyRow {
  std::string text;         // as RowText returns it
  std::int32_t number = 0;  // item data: the number of the file name
};

// The repertoire's row for a file and its first line. Errors: those of FileNumber and CutNumber.
MelodyRow RepertoireRow(std::string_view line, std::string_view fileName);

// The stem in a row's text: between the first " (" and the last character, else the whole text.
std::string_view RowStem(std::string_view row);

// "stem.number" of a row.
std::string MelodyFileName(std::string_view row, std::int32_t number);

}  // namespace tonadex::core
