#include "server/rate_limit.h"

#include <gtest/gtest.h>

#include <string>

#include "server/limits.h"
#include "tests/core/table.h"

namespace tonadex::server::rate_limit_test {

using std::chrono::seconds;

TEST(RateLimit, AllowsSoManyAMinuteFromEachAddress) {
  RateLimit limit(3);
  Clock::time_point now{};
  for (const test::Row& row : test::Table("Allowances")) {
    now += seconds(std::stoi(row[1]));
    for (const std::string_view allowed : core::SplitText(row[2], ' ')) {
      EXPECT_EQ(limit.Allow(row[0], now, row[3].empty() ? 1 : std::stoi(row[3])), allowed == "yes");
    }
  }
}

TEST(RateLimit, RemembersSoManyAddressesAndForgetsTheIdle) {
  RateLimit limit(1);
  Clock::time_point now{};
  for (std::size_t i = 0; i < kMaxRememberedAddresses; ++i) {
    ASSERT_TRUE(limit.Allow(std::to_string(i), now));
  }
  EXPECT_FALSE(limit.Allow("one more", now));
  EXPECT_TRUE(limit.Allow("one more", now + seconds(61)));
}

}  // namespace tonadex::server::rate_limit_test
