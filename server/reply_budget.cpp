#include "server/reply_budget.h"

namespace tonadex::server {

Place ReplyBudget::Take(const std::vector<SharedText>& texts) {
  bool fits = false;
  {
    const std::lock_guard lock(mutex_);
    for (const SharedText& text : texts) {
      if (++shares_[text.get()] == 1) {
        bytes_ += text->size();
      }
    }
    fits = bytes_ <= maxBytes_;
  }
  Place place(this, [this, texts](const void*) { GiveBack(texts); });
  return fits ? place : nullptr;
}

void ReplyBudget::GiveBack(const std::vector<SharedText>& texts) {
  const std::lock_guard lock(mutex_);
  for (const SharedText& text : texts) {
    const auto share = shares_.find(text.get());
    if (--share->second == 0) {
      bytes_ -= text->size();
      shares_.erase(share);
    }
  }
}

}  // namespace tonadex::server
