#include "app/result_groups.h"

#include <algorithm>
#include <utility>

#include "core/melody_file.h"
#include "net/file_name.h"
#include "phones/formats.h"

namespace tonadex::app {
namespace {

constexpr std::string_view kBlanks = " \t\r\n";
constexpr std::string_view kNameless = "melodia";
constexpr std::string_view kTextExtension = "txt";

// Splits a text without blanks behind each ",".
void AppendGroups(std::vector<ResultGroup>& groups, std::string_view word) {
  while (!word.empty()) {
    const std::size_t length = std::min(word.find(','), word.size() - 1) + 1;
    ResultGroup group{std::string(word.substr(0, length))};
    word.remove_prefix(length);
    group.glued = !word.empty();
    const std::size_t open = group.text.find('(');
    const std::size_t close = group.text.find(')');
    if (open < close && close != std::string::npos) {
      group.heldFrom = open;
      group.heldTo = close + 1;
    }
    groups.push_back(std::move(group));
  }
}

}  // namespace

std::vector<ResultGroup> ResultGroups(std::string_view result) {
  std::vector<ResultGroup> groups;
  while (!result.empty()) {
    const std::size_t word = std::min(result.find_first_of(kBlanks), result.size());
    AppendGroups(groups, result.substr(0, word));
    result.remove_prefix(word);
    const std::size_t gap = std::min(result.find_first_not_of(kBlanks), result.size());
    if (!groups.empty() && result.substr(0, gap).find_first_of("\r\n") != std::string_view::npos) {
      groups.back().lineEnd = true;
    }
    result.remove_prefix(gap);
  }
  return groups;
}

bool IsKeyPresses(std::string_view model) {
  const phones::Format* format = phones::FindFormat(model);
  return format != nullptr && format->kind == phones::Kind::kKeys;
}

std::string SuggestedFileName(std::string_view row, std::string_view model) {
  std::string name(core::RowStem(row));
  for (char& c : name) {
    if (!net::IsSafeFileName(std::string_view(&c, 1)) && c != ' ' && c != '.') {
      c = '_';
    }
  }
  const phones::Format* format = phones::FindFormat(model);
  const std::string extension(format == nullptr ? kTextExtension : format->extension);
  const std::string full = name + "." + extension;
  return !name.empty() && net::IsSafeFileName(full) ? full
                                                    : std::string(kNameless) + "." + extension;
}

}  // namespace tonadex::app
