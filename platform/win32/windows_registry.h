#pragma once

#include "app/registry.h"

namespace tonadex::platform {

// The system's registry. HKEY_CLASSES_ROOT is a merged view of the machine's and the user's
// classes: when the user has no write access to it, a value is written to the user's classes.
// Reading also looks there, for systems that do not merge.
class WindowsRegistry : public app::Registry {
 public:
  std::optional<app::RegistryValue> QueryValue(std::uint32_t root, std::string_view key,
                                               std::string_view name) override;
  bool SetValue(std::uint32_t root, std::string_view key, std::string_view name,
                const app::RegistryValue& value) override;
};

}  // namespace tonadex::platform
