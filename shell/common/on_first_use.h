#pragma once

#include <memory>

namespace tonadex::shell {

// Creates an object on first use.
template <typename T>
class OnFirstUse {
 public:
  T& Get() {
    if (object_ == nullptr) {
      object_ = std::make_unique<T>();
    }
    return *object_;
  }
  // Null before the first use.
  T* Made() const { return object_.get(); }

 private:
  std::unique_ptr<T> object_;
};

}  // namespace tonadex::shell
