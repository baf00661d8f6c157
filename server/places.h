#pragma once

#include <memory>
#include <mutex>
#include <string>
#include <unordered_map>

namespace tonadex::server {

// Kept while something is used, and given back when the last copy goes.
using Place = std::shared_ptr<const void>;

// How many connections or requests one address may have at the same time. Safe to use from several
// threads; must outlive the places taken.
class Places {
 public:
  explicit Places(int most) : most_(most) {}

  // Null when the address has all of its places. Without an address all callers share them.
  Place Take(const std::string& address = {});
  int Taken(const std::string& address = {}) const;

 private:
  void GiveBack(const std::string& address);

  const int most_;
  mutable std::mutex mutex_;
  std::unordered_map<std::string, int> taken_;
};

}  // namespace tonadex::server
