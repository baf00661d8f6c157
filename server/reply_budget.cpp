#include "server/reply_budget.h"

namespace tonadex::server {

bool ReplyBudget::Take(const std::vector<SharedText>& texts) {
  const std::lock_guard lock(mutex_);
  for (const SharedText& text : texts) {
    if (++shares_[text.get()] == 1) {
      bytes_ += text->size();
    }
  }
  return bytes_ <= maxBytes_;
}

void ReplyBudget::Return(const std::vector<SharedText>& texts) {
  const std::lock_guard lock(mutex_);
  for (const SharedText& text : texts) {
    const auto share = shares_.find(text.get());
    if (--share->second == 0) {
      bytes_ -= text->size();
      shares_.erase(share);
    }
  }
}

ReplyBudget::Share::Share(ReplyBudget& budget, const std::vector<SharedText>& texts)
    : budget_(budget), texts_(texts), granted_(budget.Take(texts)) {
  if (!granted_) {
    budget_.Return(texts_);
    texts_.clear();
  }
}

ReplyBudget::Share::~Share() {
  budget_.Return(texts_);
}

}  // namespace tonadex::server
