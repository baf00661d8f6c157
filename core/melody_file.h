#pragma once

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <istream>
#include <optional>
#include <string>
#include <string_view>

// Melody files "stem.number" and their rows in the repertoire list.
namespace tonadex::core {

// What stands for "#" in requests and stored melodies: a "#" would end an address.
inline constexpr std::string_view kSharpEscape = "juh9hay";

// The text with every "juh9hay" turned back into "#".
std::string UndoSharpEscape(std::string_view text);

// Reads up to CR, LF, CR LF or the end; the line end is taken and not given. None at the end of the
// input. A line of more than `maxBytes` is read over and cut to maxBytes + 1 bytes, so that the
// caller sees it and memory stays bounded.
std::optional<std::string> ReadLine(std::istream& input, std::size_t maxBytes);

// The first line, bytes as stored; "" for an empty input. Of a longer one the first
// maxBytes + 1 bytes are read and no more, so that endless input does no harm.
std::string ReadFirstLine(std::istream& input, std::size_t maxBytes);
// The same of a file. Errors: file not found when it cannot be opened.
std::string ReadFirstLine(const std::filesystem::path& file, std::size_t maxBytes);

// The longest first line that is read as a melody; phones take a thousandth of it.
inline constexpr std::size_t kMaxLineBytes = std::size_t{1} << 20;

// The first line of a melody file as text, read as UTF-8 when it is valid UTF-8, else as
// Windows-1252; cut at kMaxLineBytes. The sharp escape is left in place. Errors as above.
std::string ReadMelodyLine(const std::filesystem::path& file);

// The name in a stored melody's first line: up to the first ":", without its blanks; of two blanks
// in a row the second stays. Example: "Mi vals:d=4…" gives "Mivals".
std::string ScanName(std::string_view line);

// The text before the first full stop at or after position (length - 5): a number of up to five
// digits is cut off. Errors: invalid argument when there is no such full stop.
std::string_view CutNumber(std::string_view text);

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

// The path that a text names. Texts are Windows-1252, paths UTF-8 or UTF-16 outside.
std::filesystem::path PathFromText(std::string_view text);
// The text of a path; a character that Windows-1252 lacks becomes "?".
std::string TextFromPath(const std::filesystem::path& path);

// Puts the bytes in place of the file, which is whole or as it was before; a symbolic link stays
// and its target is replaced. Devices and pipes are written to as they are. Errors: device failure.
void WriteBytes(const std::filesystem::path& file, std::string_view bytes);

}  // namespace tonadex::core
