#include <gtest/gtest.h>

#include <string>

#include "tests/core/table.h"
#include "tests/support/parsed_listing.h"

namespace tonadex::net {
namespace {

std::string Rows(const Listing& listing) {
  std::string text;
  for (const ListingRow& row : listing.rows) {
    text += row.text + "=" + std::to_string(row.number) + ";";
  }
  return text;
}

TEST(ParseListing, GivesRows) {
  for (const test::Row& row : test::Table("Listings")) {
    const Listing search = ParseListing(row[0], true);
    EXPECT_EQ(Rows(search), row[1]) << row[0];
    EXPECT_EQ(search.rest, row[3]) << row[0];
    EXPECT_EQ(Rows(ParseListing(row[0], false)), row[2].empty() ? row[1] : row[2]) << row[0];
  }
}

TEST(ParseListing, LeavesLastRecordAndItsNumber) {
  const Listing listing = ParseListing("Vals (vals.120)498Tango (tango.98)498", true);
  EXPECT_EQ(listing.record, "Tango (tango)");
  EXPECT_EQ(listing.number, "98");
}

}  // namespace
}  // namespace tonadex::net
