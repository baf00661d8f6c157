#pragma once

#include <cstddef>
#include <mutex>
#include <string>
#include <unordered_map>
#include <vector>

#include "server/places.h"
#include "server/search_index.h"

namespace tonadex::server {

// Limits the memory of all replies being sent. A text shared by several replies counts once. Safe
// to use from several threads; must outlive its places.
class ReplyBudget {
 public:
  explicit ReplyBudget(std::size_t maxBytes) : maxBytes_(maxBytes) {}

  // Reserves the memory for a reply; null when the limit is reached.
  Place Take(const std::vector<SharedText>& texts);

 private:
  void GiveBack(const std::vector<SharedText>& texts);

  const std::size_t maxBytes_;
  std::mutex mutex_;  // guards the members below
  std::size_t bytes_ = 0;
  std::unordered_map<const std::string*, int> shares_;  // number of replies that hold each text
};

}  // namespace tonadex::server
