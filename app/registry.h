#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace tonadex::app {

inline constexpr std::uint32_t kHkeyClassesRoot = 0x80000000;
inline constexpr std::uint32_t kRegSz = 1;  // value type: text

struct RegistryValue {
  std::uint32_t type = kRegSz;
  std::string data;  // the stored bytes; a text may or may not carry its terminating NUL
};

// The store of the program's one setting: the registry on Windows, a small per-user file with the
// same key and value names elsewhere. Texts are Windows-1252; leading blanks are kept.
class Registry {
 public:
  virtual ~Registry() = default;
  // nullopt when the key or the value is missing or cannot be read.
  virtual std::optional<RegistryValue> QueryValue(std::uint32_t root, std::string_view key,
                                                  std::string_view name) = 0;
  // Creates or opens the key and sets the value. False when it could not be stored.
  virtual bool SetValue(std::uint32_t root, std::string_view key, std::string_view name,
                        const RegistryValue& value) = 0;
};

}  // namespace tonadex::app
