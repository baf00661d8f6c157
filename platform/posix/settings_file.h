#pragma once

#include <cstddef>
#include <filesystem>
#include <optional>
#include <string_view>

#include "app/registry.h"

namespace tonadex::platform {

// A settings file is at most this long; a longer one counts as missing.
inline constexpr std::size_t kMaxSettingsBytes = std::size_t{64} << 10;

// The registry in a small text file in UTF-8, a section per key and a line per value:
//
//   [HKEY_CLASSES_ROOT\tonadex\]
//   "modelo"=" Nokia 3310"
//
// Within the quotation marks "\\" and "\"" are themselves and "\x1F" is the character of that
// Windows-1252 code, so that every text comes back byte for byte. Lines that are none of these are
// read over. A file that is missing, too long or no UTF-8 holds no value; setting one writes it
// anew. Only values of type kRegSz can be stored; keys hold no line ends.
class SettingsFile : public app::Registry {
 public:
  explicit SettingsFile(std::filesystem::path file);

  // "tonadex/ajustes.ini" in the user's configuration folder.
  static std::filesystem::path DefaultPath();

  std::optional<app::RegistryValue> QueryValue(std::uint32_t root, std::string_view key,
                                               std::string_view name) override;
  // The file is replaced at once or stays as it was; its folder is made when it is missing.
  bool SetValue(std::uint32_t root, std::string_view key, std::string_view name,
                const app::RegistryValue& value) override;

 private:
  std::filesystem::path file_;
};

}  // namespace tonadex::platform
