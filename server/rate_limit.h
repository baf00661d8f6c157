#pragma once

#include <chrono>
#include <mutex>
#include <string>
#include <string_view>
#include <unordered_map>

namespace tonadex::server {

using Clock = std::chrono::steady_clock;

// Limits how often each address may do something: a burst of `perMinute`, refilled evenly over a
// minute. Safe to use from several threads.
class RateLimit {
 public:
  explicit RateLimit(int perMinute) : perMinute_(perMinute) {}

  // Counts `count` uses, at most a minute's allowance, and returns whether they are allowed.
  bool Allow(std::string_view address, Clock::time_point now, double count = 1);

 private:
  struct Allowance {
    double left = 0;
    Clock::time_point at;
  };
  double Refilled(const Allowance& allowance, Clock::time_point now) const;

  int perMinute_;
  std::mutex mutex_;
  std::unordered_map<std::string, Allowance> allowances_;
};

}  // namespace tonadex::server
