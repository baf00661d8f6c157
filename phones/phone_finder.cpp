#include "phones/phone_finder.h"

#include <algorithm>
#include <string>

#include "core/text.h"

namespace tonadex::phones {
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

std::vector<std::string> RowWords(const CatalogueRow& row) {
  return Words(std::string(row.brand) + " " + std::string(row.model));
}

}  // namespace

std::vector<CatalogueRow> FindPhones(std::string_view name) {
  const std::vector<std::string> wanted = Words(name);
  std::vector<CatalogueRow> exact;
  std::vector<CatalogueRow> holding;
  for (const CatalogueRow& row : CatalogueRows()) {
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

bool BeginsWords(std::string_view name, std::string_view typed) {
  const std::vector<std::string> words = Words(name), wanted = Words(typed);
  return !wanted.empty() && std::ranges::all_of(wanted, [&](const std::string& begin) {
    return std::ranges::any_of(words,
                               [&](const std::string& word) { return word.starts_with(begin); });
  });
}

}  // namespace tonadex::phones
