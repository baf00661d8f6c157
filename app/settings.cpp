#include "app/settings.h"

#include <optional>

namespace tonadex::app {

std::string RegReadString(Registry& registry, std::uint32_t root, std::string_view key,
                          std::string_view name, std::int32_t defaultValue) {
  const std::optional<RegistryValue> value = registry.QueryValue(root, key, name);
  std::string text;
  if (value && value->type == kRegSz) {
    text = value->data.substr(0, value->data.find('\0'));
  }
  return text.empty() ? std::to_string(defaultValue) : text;
}

void RegWriteString(Registry& registry, std::uint32_t root, std::string_view key,
                    std::string_view name, std::string_view data) {
  registry.SetValue(root, key, name, {kRegSz, std::string(data)});
}

}  // namespace tonadex::app
