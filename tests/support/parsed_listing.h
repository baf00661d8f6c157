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
  Listing listing;
  const ListingEnd end = ReadListing(reply, stemAlone, [&](std::string_view text, auto number) {
    listing.rows.push_back({std::string(text), number});
  });
  listing.rest = end.rest;
  listing.record = end.record;
  listing.number = end.number;
  return listing;
}

}  // namespace tonadex::net
