#pragma once

#include <cstddef>
#include <filesystem>
#include <optional>
#include <string_view>

#include "app/registry.h"

namespace tonadex::platform {

// Maximum size of a settings file; a larger one counts as missing.
inline constexpr std::size_t kMaxSettingsBytes = std::size_t{64} << 10;

// The registry as a small UTF-8 text file, a section per key and a line per value:
//
//   [HKEY_CLASSES_ROOT\tonadex\]
//   "modelo"=" Nokia 3310"
//
// Within the quotation marks "\\" and "\"" are escapes for a backslash and a quotation mark, and
// "\x1F" for the character with that Windows-1252 code, so that every string round-trips byte for
// byte. Other lines are ignored. A file that is missing, too long or not UTF-8 has no values and is
// rewritten by SetValue. Only values of type kRegSz can be stored; keys contain no line ends.
class SettingsFile : public app::Registry {
 public:
  explicit SettingsFile(std::filesystem::path file);

  // "tonadex/ajustes.ini" in the user's configuration folder.
  static std::filesystem::path DefaultPath();

  std::optional<app::RegistryValue> QueryValue(std::uint32_t root, std::string_view key,
                                               std::string_view name) override;
  // Replaces the file atomically; creates its folder if missing.
  bool SetValue(std::uint32_t root, std::string_view key, std::string_view name,
                const app::RegistryValue& value) override;

 private:
  std::filesystem::path file_;
};

}  // namespace tonadex::platform
