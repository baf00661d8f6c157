#include "platform/win32/windows_registry.h"

#include <windows.h>

#include <string>

namespace tonadex::platform {
namespace {

constexpr std::string_view kUserClasses = "Software\\Classes\\";

class Key {
 public:
  Key() = default;
  ~Key() {
    if (key_ != nullptr) {
      RegCloseKey(key_);
    }
  }
  Key(const Key&) = delete;
  Key& operator=(const Key&) = delete;

  HKEY get() const { return key_; }
  HKEY* out() { return &key_; }

 private:
  HKEY key_ = nullptr;
};

// The predefined keys are sign-extended 32-bit numbers.
HKEY Root(std::uint32_t root) {
  return reinterpret_cast<HKEY>(static_cast<LONG_PTR>(static_cast<LONG>(root)));
}

bool Store(HKEY root, const std::string& key, const std::string& name,
           const app::RegistryValue& value) {
  Key opened;
  return RegCreateKeyA(root, key.c_str(), opened.out()) == ERROR_SUCCESS &&
         RegSetValueExA(opened.get(), name.c_str(), 0, value.type,
                        reinterpret_cast<const BYTE*>(value.data.data()),
                        static_cast<DWORD>(value.data.size())) == ERROR_SUCCESS;
}

std::optional<app::RegistryValue> Load(HKEY root, const std::string& key, const std::string& name) {
  Key opened;
  DWORD type = 0;
  DWORD size = 0;
  if (RegOpenKeyA(root, key.c_str(), opened.out()) != ERROR_SUCCESS ||
      RegQueryValueExA(opened.get(), name.c_str(), nullptr, &type, nullptr, &size) !=
          ERROR_SUCCESS) {
    return std::nullopt;
  }
  // Room for the NUL that is added to a text stored without one.
  std::string data(std::size_t{size} + 2, '\0');
  size = static_cast<DWORD>(data.size());
  if (RegQueryValueExA(opened.get(), name.c_str(), nullptr, &type,
                       reinterpret_cast<BYTE*>(data.data()), &size) != ERROR_SUCCESS) {
    return std::nullopt;
  }
  data.resize(size);
  return app::RegistryValue{type, std::move(data)};
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
