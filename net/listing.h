#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

// Listings of the melody server: a run of records "description (stem.number", each followed by
// ")498". Texts are Windows-1252.
namespace tonadex::net {

inline constexpr std::string_view kRecordEnd = ")498";

// The rows shown when a listing holds none, 0 and 1; they are no melodies.
inline constexpr std::size_t kHintCount = 2;
std::string_view HintRow(std::size_t index);
bool IsHintRow(std::string_view row);

struct ListingRow {
  std::string text;         // "description (stem)", or the stem alone
  std::int32_t number = 0;  // 0 when the record's number cannot be read

  friend bool operator==(const ListingRow&, const ListingRow&) = default;
};

// A parsed listing with what the parsing leaves behind: the text after the last ")498" and the last
// record, rewritten, with its number as text (both "" when there was no record).
struct Listing {
  std::vector<ListingRow> rows;
  std::string rest, record, number;
};

// `stemAlone`: a row whose description equals its stem is the stem alone (a search; a random pick
// keeps both). Malformed records give rows as far as they can be read. Linear time, never throws.
// Example: "Vals (vals.120)498" gives {"Vals (vals)", 120}.
Listing ParseListing(std::string_view reply, bool stemAlone);

}  // namespace tonadex::net
