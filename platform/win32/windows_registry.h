#pragma once

#include "app/registry.h"

namespace tonadex::platform {

// The system's registry. HKEY_CLASSES_ROOT is a merged view of the machine's and the user's
// classes: where an ordinary user may not write into it, the user's own classes take the value.
// Reading looks there as well, for systems that do not merge.
class WindowsRegistry : public app::Registry {
 public:
  std::optional<app::RegistryValue> QueryValue(std::uint32_t root, std::string_view key,
                                               std::string_view name) override;
  bool SetValue(std::uint32_t root, std::string_view key, std::string_view name,
                const app::RegistryValue& value) override;
};

}  // namespace tonadex::platform
