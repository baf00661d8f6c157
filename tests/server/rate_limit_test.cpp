#include "server/rate_limit.h"

#include <gtest/gtest.h>

#include <string>

#include "server/limits.h"

namespace tonadex::server {
namespace {

using std::chrono::seconds;

TEST(RateLimit, AllowsSoManyAMinuteFromEachAddress) {
  RateLimit limit(3);
  Clock::time_point now{};
  const struct {
    const char* address;
    seconds later;
    bool allowed;
  } asked[] = {{"a", seconds(0), true},    {"a", seconds(0), true},  {"a", seconds(0), true},
               {"a", seconds(0), false},   {"b", seconds(0), true},  {"a", seconds(19), false},
               {"a", seconds(1), true},    {"a", seconds(0), false},  // a third of the minute
               {"a", seconds(3600), true}, {"a", seconds(0), true},  {"a", seconds(0), true},
               {"a", seconds(0), false}};  // never more than one minute's worth
  for (const auto& ask : asked) {
    now += ask.later;
    EXPECT_EQ(limit.Allow(ask.address, now), ask.allowed) << (&ask - asked);
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

}  // namespace
}  // namespace tonadex::server
