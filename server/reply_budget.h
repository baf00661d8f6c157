#pragma once

#include <cstddef>
#include <mutex>
#include <string>
#include <unordered_map>
#include <vector>

#include "server/places.h"
#include "server/search_index.h"

namespace tonadex::server {

// Bounds the memory that replies under way keep, slow clients or not. A text that several of them
// share counts once. Safe to use from several threads; must outlive the places taken.
class ReplyBudget {
 public:
  explicit ReplyBudget(std::size_t maxBytes) : maxBytes_(maxBytes) {}

  // Room for one reply, null when there is none.
  Place Take(const std::vector<SharedText>& texts);

 private:
  void GiveBack(const std::vector<SharedText>& texts);

  const std::size_t maxBytes_;
  std::mutex mutex_;  // guards what follows
  std::size_t bytes_ = 0;
  std::unordered_map<const std::string*, int> shares_;  // replies that hold each text
};

}  // namespace tonadex::server
