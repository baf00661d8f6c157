#include "server/rate_limit.h"

#include <algorithm>

#include "server/limits.h"

namespace tonadex::server {

double RateLimit::Refilled(const Allowance& allowance, Clock::time_point now) const {
  const double minutes = std::chrono::duration<double, std::ratio<60>>(now - allowance.at).count();
  return std::min<double>(perMinute_, allowance.left + minutes * perMinute_);
}

bool RateLimit::Allow(std::string_view address, Clock::time_point now, double count) {
  count = std::min<double>(count, std::max(perMinute_, 1));
  const std::lock_guard lock(mutex_);
  std::string key(address);
  auto entry = allowances_.find(key);
  if (entry == allowances_.end()) {
    if (allowances_.size() >= kMaxRememberedAddresses) {
      std::erase_if(allowances_,
                    [&](const auto& known) { return Refilled(known.second, now) >= perMinute_; });
    }
    if (allowances_.size() >= kMaxRememberedAddresses) {
      return false;
    }
    entry = allowances_.emplace(std::move(key), Allowance{double(perMinute_), now}).first;
  }
  Allowance& allowance = entry->second;
  allowance = {Refilled(allowance, now), now};
  if (allowance.left < count) {
    return false;
  }
  allowance.left -= count;
  return true;
}

}  // namespace tonadex::server
