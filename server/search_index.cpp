#include "server/search_index.h"

#include <algorithm>
#include <cstring>

#include "core/text.h"
#include "core/windows1252.h"
#include "server/melody_name.h"

namespace tonadex::server {
namespace {

using core::Code;
using namespace core::literals;

constexpr char kLineEnd = '\n';
// Inside a block lines are found oldest first; blocks are visited newest first.
constexpr std::size_t kBlockLines = 1024;
constexpr std::size_t kUsualLineBytes = 32;

// Accented letters, in lower case, and the letters below them.
constexpr std::string_view kAccented = u8"áàâäãåçéèêëíìîïñóòôöõøúùûüýÿšž"_w;
constexpr std::string_view kPlain = "aaaaaaceeeeiiiinoooooouuuuyysz";
static_assert(kAccented.size() == kPlain.size());

std::array<char, 256> MakeFoldTable() {
  std::array<char, 256> table{};
  for (std::size_t byte = 0; byte < table.size(); ++byte) {
    const char lower = core::ToLower(static_cast<char>(byte));
    const std::size_t at = kAccented.find(lower);
    table[byte] = at == kAccented.npos ? lower : kPlain[at];
  }
  return table;
}

}  // namespace

std::string Fold(std::string_view text) {
  static const std::array<char, 256> kTable = MakeFoldTable();
  std::string folded(text);
  for (char& c : folded) {
    c = kTable[Code(c)];
  }
  return folded;
}

// The words of a query, the rarest first, and where in it its rarest byte stands.
struct SearchIndex::Words {
  std::vector<std::string_view> words;
  std::size_t rareAt = 0;
};

void SearchIndex::Reserve(std::size_t melodies) {
  nameStarts_.reserve(melodies);
  recordStarts_.reserve(melodies);
  names_.reserve(melodies * kUsualLineBytes);
  records_.reserve(melodies * kUsualLineBytes);
}

void SearchIndex::Add(std::string_view description, std::string_view fileName) {
  const std::string name = Fold(description);
  const std::string stem = Fold(fileName.substr(0, fileName.find('.')));
  const std::size_t start = names_.size();
  nameStarts_.push_back(static_cast<std::uint32_t>(start));
  names_ += name;
  if (!core::Contains(name, stem)) {
    names_.append(1, ' ').append(stem);
  }
  names_ += kLineEnd;
  for (std::size_t i = start; i < names_.size(); ++i) {
    ++byteCounts_[Code(names_[i])];
  }
  recordStarts_.push_back(static_cast<std::uint32_t>(records_.size()));
  records_ += Record(description, fileName);
}

std::string_view SearchIndex::RecordAt(std::size_t melody) const {
  const std::size_t start = recordStarts_[melody];
  const std::size_t end =
      melody + 1 < recordStarts_.size() ? recordStarts_[melody + 1] : records_.size();
  return std::string_view(records_).substr(start, end - start);
}

SearchIndex::Words SearchIndex::SplitQuery(std::string_view folded) const {
  Words query;
  std::size_t lead = 0;
  std::size_t rarest = names_.size() + 1;
  for (std::size_t at = 0; at < folded.size();) {
    std::size_t end = at;
    while (end < folded.size() && Code(folded[end]) > ' ') {
      if (byteCounts_[Code(folded[end])] < rarest) {
        rarest = byteCounts_[Code(folded[end])];
        lead = query.words.size();
        query.rareAt = end - at;
      }
      ++end;
    }
    if (end > at) {
      query.words.push_back(folded.substr(at, end - at));
    }
    at = end + 1;
  }
  if (!query.words.empty()) {
    std::swap(query.words.front(), query.words[lead]);
  }
  return query;
}

// Jumps from one place of the first word's rarest byte to the next; most lines are never looked at.
void SearchIndex::SearchBlock(const Words& words, std::size_t first, std::size_t end,
                              std::vector<std::uint32_t>& found) const {
  const std::string_view lead = words.words.front();
  const auto startOf = [&](std::size_t line) -> std::size_t {
    return line < nameStarts_.size() ? nameStarts_[line] : names_.size();
  };
  const std::size_t textEnd = startOf(end);
  std::size_t line = first;
  std::size_t at = startOf(first) + words.rareAt;
  while (at < textEnd) {
    const void* hit = std::memchr(names_.data() + at, lead[words.rareAt], textEnd - at);
    if (hit == nullptr) {
      return;
    }
    at = static_cast<std::size_t>(static_cast<const char*>(hit) - names_.data());
    if (names_.compare(at - words.rareAt, lead.size(), lead) != 0) {
      ++at;
      continue;
    }
    while (startOf(line + 1) <= at) {
      ++line;
    }
    const std::string_view name(names_.data() + startOf(line), startOf(line + 1) - startOf(line));
    if (std::all_of(words.words.begin() + 1, words.words.end(),
                    [&](std::string_view word) { return core::Contains(name, word); })) {
      found.push_back(static_cast<std::uint32_t>(line));
    }
    at = startOf(line + 1) + words.rareAt;
  }
}

std::vector<std::uint32_t> SearchIndex::Search(std::string_view query, std::size_t limit) const {
  const std::string folded = Fold(query);
  const Words words = SplitQuery(folded);
  std::vector<std::uint32_t> found;
  std::vector<std::uint32_t> block;
  for (std::size_t end = size(); end > 0 && found.size() < limit;) {
    const std::size_t first = (end - 1) / kBlockLines * kBlockLines;
    block.clear();
    if (words.words.empty()) {
      for (std::size_t line = first; line < end; ++line) {
        block.push_back(static_cast<std::uint32_t>(line));
      }
    } else {
      SearchBlock(words, first, end, block);
    }
    found.insert(found.end(), block.rbegin(), block.rend());
    end = first;
  }
  found.resize(std::min(found.size(), limit));
  return found;
}

}  // namespace tonadex::server
