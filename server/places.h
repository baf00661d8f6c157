#pragma once

#include <memory>
#include <mutex>
#include <string>
#include <unordered_map>

namespace tonadex::server {

// How many connections or requests one address may have at the same time. Safe to use from several
// threads; must outlive the places taken.
class AddressLimit {
 public:
  explicit AddressLimit(int most) : most_(most) {}

  // A place for one more of this address, given back when the pointer goes; null when there is
  // none.
  std::shared_ptr<const void> Take(const std::string& address);

 private:
  void GiveBack(const std::string& address);

  const int most_;
  std::mutex mutex_;
  std::unordered_map<std::string, int> taken_;
};

}  // namespace tonadex::server
