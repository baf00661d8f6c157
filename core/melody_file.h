#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

// Melody files "stem.number" and their rows in the repertoire list.
namespace tonadex::core {

// What stands for "#" in requests and stored melodies: a "#" would end an address.
inline constexpr std::string_view kSharpEscape = "juh9hay";

// The text with every "juh9hay" turned back into "#".
std::string UndoSharpEscape(std::string_view text);

// The longest first line that is read as a melody; phones take a thousandth of it.
inline constexpr std::size_t kMaxLineBytes = std::size_t{1} << 20;

// The name in a stored melody's first line: up to the first ":", without its blanks; of two blanks
// in a row the second stays. Example: "Mi vals:d=4…" gives "Mivals".
std::string ScanName(std::string_view line);

// The text before the first full stop at or after position (length - 5): a number of up to five
// digits is cut off. Errors: invalid argument when there is no such full stop.
std::string_view CutNumber(std::string_view text);

// Where CutNumber cuts, npos where it fails.
std::size_t NumberStop(std::string_view text);

// The number of a file in `name (file name`: what stands behind the first full stop. Errors: type
// mismatch when that is no number, also when nothing stands there.
std::int32_t FileNumber(std::string_view formed);

// The stem in `name (file name`. Errors: those of CutNumber.
std::string_view FormedStem(std::string_view formed, std::string_view name);

// "name (stem)", or the stem alone when both are the same.
std::string RowText(std::string_view name, std::string_view stem);

struct MelodyRow {
  std::string text;         // as RowText gives it
  std::int32_t number = 0;  // item data: the number of the file name
};

// The repertoire's row for a file and its first line. Errors: type mismatch when the file name has
// no number, invalid argument when CutNumber has none.
MelodyRow RepertoireRow(std::string_view line, std::string_view fileName);

// The stem in a row's text: between the first " (" and the last character, else the whole text.
std::string_view RowStem(std::string_view row);

// "stem.number" of a row.
std::string MelodyFileName(std::string_view row, std::int32_t number);

}  // namespace tonadex::core
