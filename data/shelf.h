#pragma once

#include <cstddef>
#include <istream>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

#include "core/text.h"
#include "core/windows1252.h"

// Reads the table of melodies, data/shelf.txt, which documents its own format.
namespace tonadex::data {

inline constexpr std::string_view kRepertoireFlag = "repertorio";

struct ShelfRow {
  std::size_t line = 0;  // 1-based
  std::string stem;
  std::string metre;
  std::string upbeat;
  std::string flags;
  std::string rtttl;  // Windows-1252, "#" not escaped

  bool InRepertoire() const { return flags == kRepertoireFlag; }
  std::string Name() const { return rtttl.substr(0, rtttl.find(':')); }
  std::string FileName() const { return stem + "." + std::to_string(rtttl.size()); }
};

// An invalid row; what() names its line.
class ShelfError : public std::runtime_error {
 public:
  ShelfError(std::size_t line, const std::string& what)
      : std::runtime_error("line " + std::to_string(line) + ": " + what) {}
};

// Errors: ShelfError.
inline ShelfRow ParseShelfRow(std::string_view text, std::size_t line) {
  constexpr std::size_t kFields = 5;
  const std::string bytes = core::FromUtf8(text);
  if (core::ToUtf8(bytes) != text) {
    throw ShelfError(line, "not UTF-8, or a character that Windows-1252 lacks");
  }
  const std::vector<std::string_view> fields = core::SplitText(bytes, '|');
  if (fields.size() != kFields) {
    throw ShelfError(line, "needs " + std::to_string(kFields) + " fields with \"|\" between them");
  }
  const auto field = [&](std::size_t i) { return std::string(core::Trim(fields[i])); };
  return {line, field(0), field(1), field(2), field(3), field(4)};
}

// Errors: ShelfError for the first row that cannot be read.
inline std::vector<ShelfRow> ReadShelf(std::istream& table) {
  std::vector<ShelfRow> rows;
  std::string text;
  for (std::size_t line = 1; std::getline(table, text); ++line) {
    if (!text.empty() && text.front() != '#') {
      rows.push_back(ParseShelfRow(text, line));
    }
  }
  return rows;
}

}  // namespace tonadex::data
