#pragma once

#include <cstddef>
#include <filesystem>
#include <string_view>

// File names that come from the server or from a melody.
namespace tonadex::net {

inline constexpr std::size_t kMaxFileNameBytes = 255;  // of UTF-8, the limit of file systems

// Beside the melody folder: keeps what is deleted or replaced there.
inline constexpr const char* kBinFolder = "papelera";

// Whether a name (Windows-1252) is a valid file name inside its folder on every platform: not
// empty, no separator, no "..", no control character, no character that Windows forbids ("*:<>?|),
// no device name before the first full stop (CON, COM1 …), no full stop or blank at the end, not
// too long. Names are rejected, never corrected.
bool IsSafeFileName(std::string_view name);

// folder / name. Errors: core::RunTimeError (kInvalidArgument) for an unsafe name.
std::filesystem::path SafePath(const std::filesystem::path& folder, std::string_view name);

// Writes folder / name atomically. Errors: invalid argument for an unsafe name, device failure when
// writing fails or the path is not a regular file.
void StoreFile(const std::filesystem::path& folder, std::string_view name, std::string_view bytes);

}  // namespace tonadex::net
