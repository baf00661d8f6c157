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

// A text that several owners share.
using SharedText = std::shared_ptr<const std::string>;

// What searches look in: the folded description, and the folded stem unless it is part of that.
std::string SearchedName(std::string_view description, std::string_view fileName);

// The different folded words of a query, the longest first (they are the rarest, as a rule): at
// most kMaxSearchWords, from its first kMaxSearchBytes.
std::vector<std::string> SearchWords(std::string_view query);

// The names of all melodies, in blocks that copies of an index share: a copy costs a pointer for
// each block, and adding to it one new block, while the original stays as it is. Texts are
// Windows-1252. Not synchronised.
//
// A block knows which of its lines hold a byte, two or three neighbours, one bit for each line. A
// search combines these rows of bits, the rarest first, and looks only at the lines that are left.
class SearchIndex {
 public:
  SearchIndex();
  // The newest melody comes last. Neither text holds control characters.
  void Add(std::string_view description, std::string_view fileName);

  std::size_t size() const { return size_; }
  // "description (stem.number)498"
  std::string_view RecordAt(std::size_t melody) const;
  // All records, oldest first, in one or more texts.
  std::vector<SharedText> Records() const;

  // Up to `limit` melodies, newest first, whose name or stem holds every word of `query`; words
  // are what blanks separate. kMaxSearchWords different words count, and kMaxSearchBytes of the
  // query. A query without words gives the newest. Ends early, with what it has found so far, when
  // `abandoned` (asked now and then) says so.
  std::vector<std::uint32_t> Search(std::string_view query, std::size_t limit,
                                    const std::function<bool()>& abandoned = {}) const;

 private:
  struct Block;
  struct Query;
  static constexpr std::size_t kGrams = 256 + 1024 + 1024;  // one, two, three bytes

  Block& WritableTail();
  Query MakeQuery(std::string_view text) const;

  std::vector<std::shared_ptr<Block>> blocks_;  // all but the last are full
  std::size_t size_ = 0;
  std::array<std::uint32_t, kGrams> counts_{};  // lines that hold each of them
};

}  // namespace tonadex::server
