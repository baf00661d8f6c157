#pragma once

#include <memory>

namespace tonadex::shell {

// An object that is made when it is first asked for.
template <typename T>
class OnFirstUse {
 public:
  T& Get() {
    if (object_ == nullptr) {
      object_ = std::make_unique<T>();
    }
    return *object_;
  }
  // Null while nobody asked for it.
  T* Made() const { return object_.get(); }

 private:
  std::unique_ptr<T> object_;
};

}  // namespace tonadex::shell
