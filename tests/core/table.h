#pragma once

#include <gtest/gtest.h>

#include <fstream>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

#include "core/text.h"

namespace tonadex::test {

// The fields of a row; missing ones are "".
struct Row {
  std::vector<std::string> fields;
  const std::string& operator[](std::size_t i) const {
    static const std::string kNone;
    return i < fields.size() ? fields[i] : kNone;
  }
};

inline Row ReadRow(std::string line) {
  Row row;
  for (const std::string_view part : core::SplitText(line, '|')) {
    std::string field(core::Trim(part));
    core::ReplaceAll(field, "_", " ");
    core::ReplaceAll(field, "¶", "\r\n");
    core::ReplaceAll(field, "\\n", "\n");
    for (std::size_t at = 0; (at = field.find("\\x", at)) != std::string::npos; ++at) {
      field.replace(at, 4, 1, static_cast<char>(std::stoi(field.substr(at + 2, 2), nullptr, 16)));
    }
    row.fields.push_back(std::move(field));
  }
  return row;
}

// The rows below "[section]" of the layer's table.txt (UTF-8). Fields are separated by "|" and
// trimmed; "_" is a blank that is kept, "¶" CR LF, "\n" LF and "\x00" any byte; lines that start
// with "//" are comments.
inline std::vector<Row> Table(std::string_view section, const char* file = TONADEX_TABLE) {
  std::vector<Row> rows;
  std::ifstream in(file);
  bool inside = false;
  for (std::string line; std::getline(in, line);) {
    if (line.starts_with('[')) {
      inside = line == "[" + std::string(section) + "]";
    } else if (inside && !line.empty() && !line.starts_with("//")) {
      rows.push_back(ReadRow(line));
    }
  }
  if (rows.empty()) {
    throw std::runtime_error("no rows in section " + std::string(section));
  }
  return rows;
}

// Compares `result` of each row of the section with the row's field `column`.
template <typename Result>
void ExpectRows(std::string_view section, Result result, std::size_t column = 1) {
  for (const Row& row : Table(section)) {
    EXPECT_EQ(result(row), row[column]) << section << ": " << row[0];
  }
}

}  // namespace tonadex::test
