#pragma once

#include <cstddef>
#include <mutex>
#include <string>
#include <unordered_map>
#include <vector>

#include "server/search_index.h"

namespace tonadex::server {

// Bounds the memory that replies under way keep, slow clients or not. A text that several of them
// share counts once. Safe to use from several threads.
class ReplyBudget {
 public:
  explicit ReplyBudget(std::size_t maxBytes) : maxBytes_(maxBytes) {}

  // One reply's share, from the constructor to the destructor, if there is room for it.
  class Share {
   public:
    Share(ReplyBudget& budget, const std::vector<SharedText>& texts);
    ~Share();
    Share(const Share&) = delete;
    Share& operator=(const Share&) = delete;
    bool granted() const { return granted_; }

   private:
    ReplyBudget& budget_;
    std::vector<SharedText> texts_;
    bool granted_;
  };

 private:
  bool Take(const std::vector<SharedText>& texts);
  void Return(const std::vector<SharedText>& texts);

  const std::size_t maxBytes_;
  std::mutex mutex_;  // guards what follows
  std::size_t bytes_ = 0;
  std::unordered_map<const std::string*, int> shares_;  // replies that hold each text
};

}  // namespace tonadex::server
