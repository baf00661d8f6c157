#include "phones/phone_finder.h"

#include <gtest/gtest.h>

#include <string>

#include "tests/core/table.h"

namespace tonadex::phones {
namespace {

std::string Found(std::string_view name) {
  std::string models;
  for (const CatalogueRow& row : FindPhones(name)) {
    models += "[" + std::string(row.model) + "]";
  }
  return models;
}

TEST(FindPhones, TakesLooseNames) {
  for (const test::Row& row : test::Table("Phones")) {
    EXPECT_EQ(Found(row[0]), row[1]) << row[0];
  }
}

}  // namespace
}  // namespace tonadex::phones
