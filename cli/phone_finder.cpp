#include "cli/phone_finder.h"

#include <algorithm>
#include <string>

#include "core/text.h"

namespace tonadex::cli {
namespace {

bool IsWordCharacter(char c) {
  return core::IsDigit(c) || (c >= 'a' && c <= 'z') || core::Code(c) >= 0xC0;
}

std::vector<std::string> Words(std::string_view text) {
  std::vector<std::string> words(1);
  for (const char c : core::ToLower(text)) {
    if (IsWordCharacter(c)) {
      words.back() += c;
    } else if (!words.back().empty()) {
      words.emplace_back();
    }
  }
  if (words.back().empty()) {
    words.pop_back();
  }
  return words;
}

std::vector<std::string> RowWords(const core::CatalogueRow& row) {
  return Words(std::string(row.brand) + " " + std::string(row.model));
}

}  // namespace

std::vector<core::CatalogueRow> FindPhones(std::string_view name) {
  const std::vector<std::string> wanted = Words(name);
  std::vector<core::CatalogueRow> exact;
  std::vector<core::CatalogueRow> holding;
  for (const core::CatalogueRow& row : core::CatalogueRows()) {
    const std::vector<std::string> words = RowWords(row);
    if (wanted == words || wanted == Words(row.model)) {
      exact.push_back(row);
    }
    if (!wanted.empty() && std::ranges::all_of(wanted, [&](const std::string& word) {
          return std::ranges::find(words, word) != words.end();
        })) {
      holding.push_back(row);
    }
  }
  return exact.size() == 1 ? exact : holding;
}

}  // namespace tonadex::cli
