#pragma once

#include <cstddef>
#include <filesystem>
#include <string_view>

// File names that come from the server or from a melody.
namespace tonadex::net {

inline constexpr std::size_t kMaxFileNameBytes = 255;  // in UTF-8, what file systems hold

// Whether a name (Windows-1252) can be a file of its folder on every platform: not empty, no
// separator, no "..", no control character, nothing that Windows file names cannot hold
// (" * : < > ? |), no device name before the first full stop (CON, COM1 …), no full stop or blank
// at its end, not too long. A name is accepted or refused, never repaired.
bool IsSafeFileName(std::string_view name);

// folder / name. Errors: core::RunTimeError (kInvalidArgument) for a name that is refused.
std::filesystem::path SafePath(const std::filesystem::path& folder, std::string_view name);

// Writes folder / name, whole or not at all. Errors: invalid argument for a refused name, device
// failure.
void StoreFile(const std::filesystem::path& folder, std::string_view name, std::string_view bytes);

}  // namespace tonadex::net
