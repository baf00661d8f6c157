#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <string>
#include <string_view>

// Listings of the melody server: records "description (stem.number", each followed by ")498".
// Strings are Windows-1252.
namespace tonadex::net {

inline constexpr std::string_view kRecordEnd = ")498";

// The two rows shown for a listing without records; they are not melodies.
inline constexpr std::size_t kHintCount = 2;
std::string_view HintRow(std::size_t index);
bool IsHintRow(std::string_view row);

// The end of a listing: the text after the last ")498", and the last record in the form of a row
// with its number as text (both "" without records). `rest` and `number` are views of the reply.
struct ListingEnd {
  std::string_view rest, number;
  std::string record;
};

// Called with a row's text, "description (stem)" or the stem alone, valid during the call, and its
// number, 0 when the record's number cannot be read.
using AddListingRow = std::function<void(std::string_view text, std::int32_t number)>;

// Calls `add` for each record. `stemAlone`: a row whose description equals its stem is shortened to
// the stem (used for searches; a random pick shows both). Of a malformed record the readable parts
// become a row. Takes linear time and throws only what `add` throws. Example: "Vals (vals.120)498"
// calls add("Vals (vals)", 120).
ListingEnd ReadListing(std::string_view reply, bool stemAlone, const AddListingRow& add);

// How many rows ReadListing adds.
std::size_t CountRecords(std::string_view reply);

}  // namespace tonadex::net
