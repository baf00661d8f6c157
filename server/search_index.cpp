#include "server/search_index.h"

#include <algorithm>
#include <bit>
#include <utility>

#include "core/text.h"
#include "server/limits.h"
#include "server/melody_name.h"

namespace tonadex::server {
namespace {

using core::Code;

constexpr std::size_t kBlockLines = 1024;
// Uses only the rarest grams of a query: they leave few candidate lines, and each further gram
// costs more than it saves.
constexpr std::size_t kMaxQueryGrams = 24;
constexpr std::size_t kBlocksBetweenQuestions = 8;  // between calls of `abandoned`

// One bit per line of a block.
using LineSet = std::array<std::uint64_t, kBlockLines / 64>;

// Calls `use` with the number of each gram of one, two and three bytes. Of pairs the lower five
// bits per byte count, which distinguish letters and keep the table small. Triples are hashed, so
// several share a number.
template <typename Use>
void ForEachGram(std::string_view text, Use use) {
  std::uint32_t last = 0;  // the lower five bits of the last three bytes
  for (std::size_t i = 0; i < text.size(); ++i) {
    last = (last << 5 | (Code(text[i]) & 31u)) & 0x7fff;
    use(std::size_t{Code(text[i])});
    if (i > 0) {
      use(256 + (last & 0x3ff));
    }
    if (i > 1) {
      use(256 + 1024 + (last * 0x9e3779b1u >> 22));
    }
  }
}

LineSet FirstLines(std::size_t count) {
  LineSet lines{};
  for (std::size_t i = 0; i < count; i += 64) {
    lines[i / 64] = ~std::uint64_t{0} >> (count - i < 64 ? 64 - (count - i) : 0);
  }
  return lines;
}

// Removes the lines that are not in `others`; returns whether any are left.
bool Intersect(LineSet& lines, const LineSet& others) {
  std::uint64_t any = 0;
  for (std::size_t i = 0; i < lines.size(); ++i) {
    any |= lines[i] &= others[i];
  }
  return any != 0;
}

// Calls `use` for each line, newest first, until it returns false.
template <typename Use>
void ForEachFromLast(const LineSet& lines, Use use) {
  for (std::size_t i = lines.size(); i-- > 0;) {
    for (std::uint64_t rest = lines[i]; rest != 0;) {
      const auto bit = static_cast<std::size_t>(std::bit_width(rest)) - 1;
      if (!use(i * 64 + bit)) {
        return;
      }
      rest ^= std::uint64_t{1} << bit;
    }
  }
}

std::string_view Line(const std::string& text, const std::vector<std::uint32_t>& ends,
                      std::size_t line) {
  const std::size_t start = line == 0 ? 0 : ends[line - 1];
  return std::string_view(text).substr(start, ends[line] - start);
}

}  // namespace

std::string SearchedName(std::string_view description, std::string_view fileName) {
  std::string name = core::Fold(description);
  const std::string stem = core::Fold(fileName.substr(0, fileName.find('.')));
  if (!core::Contains(name, stem)) {
    name.append(1, ' ').append(stem);
  }
  return name;
}

std::vector<std::string> SearchWords(std::string_view query) {
  const std::string folded = core::Fold(query.substr(0, kMaxSearchBytes));
  std::string_view rest = folded;
  std::vector<std::string> words;
  while (!rest.empty() && words.size() < kMaxSearchWords) {
    const auto blank = std::ranges::find_if(rest, [](char c) { return Code(c) <= ' '; });
    const auto length = static_cast<std::size_t>(blank - rest.begin());
    const std::string_view word = rest.substr(0, length);
    if (!word.empty() && std::ranges::find(words, word) == words.end()) {
      words.emplace_back(word);
    }
    rest.remove_prefix(std::min(length + 1, rest.size()));
  }
  std::ranges::sort(words, std::greater(), &std::string::size);
  return words;
}

struct SearchIndex::Block {
  std::size_t size() const { return nameEnds.size(); }
  std::string_view Name(std::size_t line) const { return Line(names, nameEnds, line); }
  std::string_view RecordAt(std::size_t line) const { return Line(*records, recordEnds, line); }

  std::string names;  // folded and concatenated
  std::vector<std::uint32_t> nameEnds;
  std::shared_ptr<std::string> records = std::make_shared<std::string>();
  std::vector<std::uint32_t> recordEnds;
  std::array<std::uint16_t, kGrams> rowOf{};  // 0, an empty row, for grams that occur in no line
  std::vector<LineSet> rows{1};
};

// A parsed query.
struct SearchIndex::Query {
  std::vector<std::string> words;    // the longest first
  std::vector<std::uint16_t> grams;  // of all words, the rarest first
};

SearchIndex::SearchIndex() : blocks_{std::make_shared<Block>()} {}

// The last block, after making it writable: it has space for a melody and no other owner.
SearchIndex::Block& SearchIndex::WritableTail() {
  std::shared_ptr<Block>& tail = blocks_.back();
  if (tail->size() == kBlockLines) {
    blocks_.push_back(std::make_shared<Block>());
  } else if (tail.use_count() > 1 || tail->records.use_count() > 1) {
    tail = std::make_shared<Block>(*tail);
    tail->records = std::make_shared<std::string>(*tail->records);
  }
  return *blocks_.back();
}

void SearchIndex::Add(std::string_view description, std::string_view fileName) {
  const std::string name = SearchedName(description, fileName);
  Block& block = WritableTail();
  const std::size_t line = block.size();
  ForEachGram(name, [&](std::size_t gram) {
    if (block.rowOf[gram] == 0) {
      block.rowOf[gram] = static_cast<std::uint16_t>(block.rows.size());
      block.rows.emplace_back();
    }
    std::uint64_t& lines = block.rows[block.rowOf[gram]][line / 64];
    const std::uint64_t bit = std::uint64_t{1} << line % 64;
    counts_[gram] += (lines & bit) == 0;
    lines |= bit;
  });
  block.names += name;
  block.nameEnds.push_back(static_cast<std::uint32_t>(block.names.size()));
  *block.records += Record(description, fileName);
  block.recordEnds.push_back(static_cast<std::uint32_t>(block.records->size()));
  if (block.size() == kBlockLines) {
    block.names.shrink_to_fit();
    block.records->shrink_to_fit();
    block.rows.shrink_to_fit();
  }
  ++size_;
}

std::string_view SearchIndex::RecordAt(std::size_t melody) const {
  return blocks_[melody / kBlockLines]->RecordAt(melody % kBlockLines);
}

std::vector<SharedText> SearchIndex::Records() const {
  std::vector<SharedText> texts;
  texts.reserve(blocks_.size());
  for (const auto& block : blocks_) {
    texts.push_back(block->records);
  }
  return texts;
}

SearchIndex::Query SearchIndex::MakeQuery(std::string_view text) const {
  Query query{SearchWords(text), {}};
  for (const std::string& word : query.words) {
    ForEachGram(word,
                [&](std::size_t gram) { query.grams.push_back(static_cast<std::uint16_t>(gram)); });
  }
  std::ranges::sort(query.grams, {},
                    [&](std::uint16_t gram) { return std::pair(counts_[gram], gram); });
  query.grams.erase(std::unique(query.grams.begin(), query.grams.end()), query.grams.end());
  query.grams.resize(std::min(query.grams.size(), kMaxQueryGrams));
  return query;
}

std::vector<std::uint32_t> SearchIndex::Search(std::string_view text, std::size_t limit,
                                               const std::function<bool()>& abandoned) const {
  const Query query = MakeQuery(text);
  std::vector<std::uint32_t> found;
  if (!query.grams.empty() && counts_[query.grams.front()] == 0) {
    return found;  // the rarest gram occurs in no name
  }
  for (std::size_t b = blocks_.size(); b-- > 0 && found.size() < limit;) {
    if (b % kBlocksBetweenQuestions == 0 && abandoned && abandoned()) {
      break;
    }
    const Block& block = *blocks_[b];
    LineSet left = FirstLines(block.size());
    const auto keepThoseWith = [&](std::uint16_t gram) {
      return Intersect(left, block.rows[block.rowOf[gram]]);
    };
    if (!std::ranges::all_of(query.grams, keepThoseWith)) {
      continue;
    }
    ForEachFromLast(left, [&](std::size_t line) {
      const std::string_view name = block.Name(line);
      if (std::ranges::all_of(query.words,
                              [&](const auto& word) { return core::Contains(name, word); })) {
        found.push_back(static_cast<std::uint32_t>(b * kBlockLines + line));
      }
      return found.size() < limit;
    });
  }
  return found;
}

}  // namespace tonadex::server
