#include "platform/win32/windows_registry.h"

#include <windows.h>

#include <string>

namespace tonadex::platform {
namespace {

constexpr std::string_view kUserClasses = "Software\\Classes\\";

// The predefined keys are sign-extended 32-bit numbers.
HKEY Root(std::uint32_t root) {
  return reinterpret_cast<HKEY>(static_cast<LONG_PTR>(static_cast<LONG>(root)));
}

bool Store(HKEY root, const std::string& key, const std::string& name,
           const app::RegistryValue& value) {
  return RegSetKeyValueA(root, key.c_str(), name.c_str(), value.type, value.data.data(),
                         static_cast<DWORD>(value.data.size())) == ERROR_SUCCESS;
}

// RegGetValueA adds the NUL to a string that was stored without one.
std::optional<app::RegistryValue> Load(HKEY root, const std::string& key, const std::string& name) {
  DWORD type = 0, size = 0;
  std::string data;
  LSTATUS status = ERROR_MORE_DATA;
  for (int tries = 0; tries < 2 && status == ERROR_MORE_DATA; ++tries) {
    data.resize(size);
    status = RegGetValueA(root, key.c_str(), name.c_str(), RRF_RT_ANY | RRF_NOEXPAND, &type,
                          data.data(), &size);
  }
  data.resize(size);
  return status == ERROR_SUCCESS ? std::optional(app::RegistryValue{type, std::move(data)})
                                 : std::nullopt;
}

}  // namespace

std::optional<app::RegistryValue> WindowsRegistry::QueryValue(std::uint32_t root,
                                                              std::string_view key,
                                                              std::string_view name) {
  const std::string keyText(key), nameText(name);
  std::optional<app::RegistryValue> value = Load(Root(root), keyText, nameText);
  if (!value && root == app::kHkeyClassesRoot) {
    value = Load(HKEY_CURRENT_USER, std::string(kUserClasses) + keyText, nameText);
  }
  return value;
}

bool WindowsRegistry::SetValue(std::uint32_t root, std::string_view key, std::string_view name,
                               const app::RegistryValue& value) {
  const std::string keyText(key), nameText(name);
  if (Store(Root(root), keyText, nameText, value)) {
    return true;
  }
  return root == app::kHkeyClassesRoot &&
         Store(HKEY_CURRENT_USER, std::string(kUserClasses) + keyText, nameText, value);
}

}  // namespace tonadex::platform
