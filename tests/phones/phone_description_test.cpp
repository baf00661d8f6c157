#include "phones/phone_description.h"

#include <gtest/gtest.h>

#include "core/windows1252.h"
#include "tests/core/table.h"

namespace tonadex::phones {
namespace {

TEST(PhoneDescription, NameThePhoneAndWhatItGets) {
  for (const test::Row& row : test::Table("Words")) {
    EXPECT_EQ(core::ToUtf8(PhoneName(row[0])), row[1]);
    EXPECT_EQ(core::ToUtf8(PhoneGets(row[0])), row[2]);
  }
}

}  // namespace
}  // namespace tonadex::phones
