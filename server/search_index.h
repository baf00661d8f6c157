#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace tonadex::server {

// An immutable text with several owners.
using SharedText = std::shared_ptr<const std::string>;

// The text that searches compare: the folded description, followed by the folded stem unless it is
// part of the description.
std::string SearchedName(std::string_view description, std::string_view fileName);

// The distinct folded words of a query, the longest first, because they are usually the rarest. At
// most kMaxSearchWords, from the first kMaxSearchBytes.
std::vector<std::string> SearchWords(std::string_view query);

// The names of all melodies. Copies share their blocks: a copy costs a pointer per block, and
// adding to it one new block, while the original is unchanged. Texts are Windows-1252. Not
// synchronised.
//
// Each block has a bitmap, one bit per line, for every byte, pair and triple of bytes. A search
// combines the bitmaps of its words, the rarest first, and compares only the remaining lines.
class SearchIndex {
 public:
  SearchIndex();
  // Adds a melody as the newest. Neither text may contain control characters.
  void Add(std::string_view description, std::string_view fileName);

  std::size_t size() const { return size_; }
  // The record "description (stem.number)498".
  std::string_view RecordAt(std::size_t melody) const;
  // All records, oldest first, in one or more texts.
  std::vector<SharedText> Records() const;

  // Up to `limit` melodies, newest first, whose name or stem contains every word of `query`. Words
  // are separated by blanks; see SearchWords for the limits. A query without words returns the
  // newest. Stops early, with the melodies found so far, when `abandoned`, which is called from
  // time to time, returns true.
  std::vector<std::uint32_t> Search(std::string_view query, std::size_t limit,
                                    const std::function<bool()>& abandoned = {}) const;

 private:
  struct Block;
  struct Query;
  static constexpr std::size_t kGrams = 256 + 1024 + 1024;  // of one, two and three bytes

  Block& WritableTail();
  Query MakeQuery(std::string_view text) const;

  std::vector<std::shared_ptr<Block>> blocks_;  // all but the last are full
  std::size_t size_ = 0;
  std::array<std::uint32_t, kGrams> counts_{};  // number of lines that contain each gram
};

}  // namespace tonadex::server
