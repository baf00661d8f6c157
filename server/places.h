#pragma once

#include <memory>
#include <mutex>
#include <string>
#include <unordered_map>

namespace tonadex::server {

// A place in use; released when the last copy is destroyed.
using Place = std::shared_ptr<const void>;

// Limits the simultaneous connections or requests of each client address. Safe to use from several
// threads; must outlive its places.
class Places {
 public:
  explicit Places(int most) : most_(most) {}

  // Null when the address has no place left. All callers with an empty address share one limit.
  Place Take(const std::string& address = {});
  int Taken(const std::string& address = {}) const;

 private:
  void GiveBack(const std::string& address);

  const int most_;
  mutable std::mutex mutex_;
  std::unordered_map<std::string, int> taken_;
};

}  // namespace tonadex::server
