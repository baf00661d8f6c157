#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "app/result_groups.h"

// A result as lines of a fixed width, so that no group is torn apart.
namespace tonadex::shell {

struct TextRange {
  std::size_t from = 0, to = 0;

  friend bool operator==(const TextRange&, const TextRange&) = default;
};

struct DisplayText {
  std::string text;                 // lines parted by LF, Windows-1252
  std::vector<std::size_t> origin;  // where each character of `text`, and its end, stands in the
                                    // result
  std::vector<TextRange> groups;    // in `text`, in order
  std::vector<TextRange> held;      // set heavier
  std::vector<TextRange> margin;    // the numbers at the lines' beginnings

  friend bool operator==(const DisplayText&, const DisplayText&) = default;
};

// Lays the groups out in lines of at most `columns` characters. `counted` puts the number of a
// line's first group at its margin and the groups two blanks apart. A group that no line can hold
// is broken where it must be.
DisplayText LayOutDisplay(std::string_view result, const std::vector<app::ResultGroup>& groups,
                          bool counted, std::size_t columns);

// The part of the result that the characters of `range` show.
std::string_view ShownPart(std::string_view result, const DisplayText& shown, TextRange range);

}  // namespace tonadex::shell
