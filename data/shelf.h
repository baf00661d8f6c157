#pragma once

#include <algorithm>
#include <array>
#include <cstddef>
#include <istream>
#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

// The table of melodies, data/shelf.txt, which explains its own form. Standard library only: the
// build runs its readers before anything else of the project exists.
namespace tonadex::data {

inline constexpr std::string_view kRepertoireFlag = "repertorio";

struct ShelfRow {
  std::size_t line = 0;  // 1-based
  std::string stem;
  std::string metre;
  std::string upbeat;
  std::string flags;
  std::string rtttl;  // Windows-1252, one byte per character, "#" as itself

  bool InRepertoire() const { return flags == kRepertoireFlag; }
  std::string Name() const { return rtttl.substr(0, rtttl.find(':')); }
  std::string FileName() const { return stem + "." + std::to_string(rtttl.size()); }
};

// A row that cannot be read; the text names its line.
class ShelfError : public std::runtime_error {
 public:
  ShelfError(std::size_t line, const std::string& what)
      : std::runtime_error("line " + std::to_string(line) + ": " + what) {}
};

// Windows-1252 bytes 128 to 159; 0 for the five that stand for nothing.
inline constexpr std::array<char32_t, 32> kUpperControls = {
    0x20AC, 0,      0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021, 0x02C6, 0x2030, 0x0160,
    0x2039, 0x0152, 0,      0x017D, 0,      0,      0x2018, 0x2019, 0x201C, 0x201D, 0x2022,
    0x2013, 0x2014, 0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0,      0x017E, 0x0178};

inline std::optional<char> Windows1252Byte(char32_t character) {
  if (character < 0x80 || (character >= 0xA0 && character <= 0xFF)) {
    return static_cast<char>(character);
  }
  const auto found = std::find(kUpperControls.begin(), kUpperControls.end(), character);
  if (found == kUpperControls.end()) {
    return std::nullopt;
  }
  return static_cast<char>(0x80 + (found - kUpperControls.begin()));
}

// One character of the two and three byte forms as well as ASCII, cut off the front of `utf8`; none
// when the bytes are no such character. Longer forms hold nothing that Windows-1252 has.
inline std::optional<char32_t> TakeCharacter(std::string_view& utf8) {
  const auto byte = [&](std::size_t i) {
    return static_cast<char32_t>(i < utf8.size() ? static_cast<unsigned char>(utf8[i]) : 0);
  };
  const char32_t lead = byte(0);
  const std::size_t length = lead < 0x80 ? 1 : lead < 0xE0 ? 2 : 3;
  if (utf8.empty() || (lead >= 0x80 && lead < 0xC2) || lead >= 0xF0) {
    return std::nullopt;
  }
  char32_t character = length == 1 ? lead : length == 2 ? lead & 0x1F : lead & 0x0F;
  for (std::size_t i = 1; i < length; ++i) {
    if ((byte(i) & 0xC0) != 0x80) {
      return std::nullopt;
    }
    character = (character << 6) | (byte(i) & 0x3F);
  }
  if (length == 3 && character < 0x800) {
    return std::nullopt;
  }
  utf8.remove_prefix(length);
  return character;
}

// None for bytes that are no UTF-8 and for characters that Windows-1252 lacks.
inline std::optional<std::string> Windows1252FromUtf8(std::string_view utf8) {
  std::string bytes;
  while (!utf8.empty()) {
    const std::optional<char32_t> character = TakeCharacter(utf8);
    const std::optional<char> byte = character ? Windows1252Byte(*character) : std::nullopt;
    if (!byte) {
      return std::nullopt;
    }
    bytes += *byte;
  }
  return bytes;
}

inline std::string_view TrimBlanks(std::string_view text) {
  const std::size_t first = text.find_first_not_of(" \t\r");
  if (first == std::string_view::npos) {
    return {};
  }
  return text.substr(first, text.find_last_not_of(" \t\r") - first + 1);
}

inline std::vector<std::string_view> SplitAt(std::string_view text, char separator) {
  std::vector<std::string_view> parts;
  for (std::size_t at = text.find(separator); at != std::string_view::npos;
       at = text.find(separator)) {
    parts.push_back(text.substr(0, at));
    text.remove_prefix(at + 1);
  }
  parts.push_back(text);
  return parts;
}

// Errors: ShelfError.
inline ShelfRow ParseShelfRow(std::string_view text, std::size_t line) {
  constexpr std::size_t kFields = 5;
  const std::optional<std::string> bytes = Windows1252FromUtf8(text);
  if (!bytes) {
    throw ShelfError(line, "not UTF-8, or a character that Windows-1252 lacks");
  }
  const std::vector<std::string_view> fields = SplitAt(*bytes, '|');
  if (fields.size() != kFields) {
    throw ShelfError(line, "needs " + std::to_string(kFields) + " fields with \"|\" between them");
  }
  const auto field = [&](std::size_t i) { return std::string(TrimBlanks(fields[i])); };
  return {line, field(0), field(1), field(2), field(3), field(4)};
}

// Errors: ShelfError for the first row that cannot be read.
inline std::vector<ShelfRow> ReadShelf(std::istream& table) {
  std::vector<ShelfRow> rows;
  std::string text;
  for (std::size_t line = 1; std::getline(table, text); ++line) {
    const std::string_view row = TrimBlanks(text);
    if (!row.empty() && row.front() != '#') {
      rows.push_back(ParseShelfRow(row, line));
    }
  }
  return rows;
}

}  // namespace tonadex::data
