#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "app/registry.h"

// The program's one saved setting.
namespace tonadex::app {

inline constexpr std::string_view kSettingKey = "tonadex\\";
inline constexpr std::string_view kModelSetting = "modelo";

// The text value up to its first NUL; `defaultValue` in decimal digits when the value is missing,
// empty or not a text. Never throws.
std::string RegReadString(Registry& registry, std::uint32_t root, std::string_view key,
                          std::string_view name, std::int32_t defaultValue);

// Stores a text without its terminating NUL. A failure is not reported.
void RegWriteString(Registry& registry, std::uint32_t root, std::string_view key,
                    std::string_view name, std::string_view data);

}  // namespace tonadex::app
