#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "net/listing.h"

namespace tonadex::net {

struct ListingRow {
  std::string text;
  std::int32_t number = 0;

  friend bool operator==(const ListingRow&, const ListingRow&) = default;
};

// A parsed listing with its rows collected.
struct Listing {
  std::vector<ListingRow> rows;
  std::string rest, record, number;
};

inline Listing ParseListing(std::string_view reply, bool stemAlone) {
  std::vector<ListingRow> rows;
  const ListingEnd end = ReadListing(reply, stemAlone, [&](std::string_view text, auto number) {
    rows.push_back({std::string(text), number});
  });
  return {rows, std::string(end.rest), end.record, std::string(end.number)};
}

}  // namespace tonadex::net
