#include "server/places.h"

namespace tonadex::server {

Place Places::Take(const std::string& address) {
  {
    const std::lock_guard lock(mutex_);
    int& taken = taken_[address];
    if (taken >= most_) {
      return nullptr;
    }
    ++taken;
  }
  return {this, [this, address](const void*) { GiveBack(address); }};
}

int Places::Taken(const std::string& address) const {
  const std::lock_guard lock(mutex_);
  const auto entry = taken_.find(address);
  return entry == taken_.end() ? 0 : entry->second;
}

void Places::GiveBack(const std::string& address) {
  const std::lock_guard lock(mutex_);
  const auto entry = taken_.find(address);
  if (--entry->second == 0) {
    taken_.erase(entry);
  }
}

}  // namespace tonadex::server
