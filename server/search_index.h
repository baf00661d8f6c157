#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace tonadex::server {

// Lower case without accents: what names and search words are compared by. One byte stays one byte.
std::string Fold(std::string_view text);

// The names of all melodies in one piece of memory, searched by going through it from the newest
// melody to the oldest. Texts are Windows-1252. Not synchronised; holds up to 4 GiB of names.
class SearchIndex {
 public:
  // The newest melody comes last. Neither text holds control characters.
  void Add(std::string_view description, std::string_view fileName);
  void Reserve(std::size_t melodies);

  std::size_t size() const { return recordStarts_.size(); }
  // "description (stem.number)498"
  std::string_view RecordAt(std::size_t melody) const;
  // All records, oldest first.
  const std::string& Records() const { return records_; }

  // Up to `limit` melodies, newest first, whose name or stem holds every word of `query`; words
  // are what blanks separate. A query without words gives the newest.
  std::vector<std::uint32_t> Search(std::string_view query, std::size_t limit) const;

 private:
  struct Words;
  Words SplitQuery(std::string_view folded) const;
  void SearchBlock(const Words& words, std::size_t first, std::size_t end,
                   std::vector<std::uint32_t>& found) const;

  std::string names_;                      // folded "name stem" lines, each ended by a line feed
  std::vector<std::uint32_t> nameStarts_;  // of each line in names_
  std::string records_;
  std::vector<std::uint32_t> recordStarts_;    // of each record in records_
  std::array<std::size_t, 256> byteCounts_{};  // how often each byte occurs in names_
};

}  // namespace tonadex::server
