#pragma once

#include <cstddef>
#include <filesystem>
#include <optional>
#include <string>
#include <string_view>

// Files that are either the old or the new one, never half of each.
namespace tonadex::platform {

enum class Durability {
  kRename,  // readers see the old or the new file; a power cut may lose the new one
  kDisk,    // the new file is on the disk when the call returns
};

// Puts `bytes` in place of `file` through a temporary neighbour that is renamed. A symbolic link
// stays and its target is replaced. False when that failed: `file` is then what it was before and
// nothing is left beside it. `mode`: the permissions of the file.
bool WriteAtomically(const std::filesystem::path& file, std::string_view bytes,
                     Durability durability, unsigned mode = 0644);

// The bytes of a regular file of at most `maxBytes`; none when it is missing, larger, of another
// kind or cannot be read. Never waits: a named pipe is no regular file.
std::optional<std::string> ReadSmallFile(const std::filesystem::path& file, std::size_t maxBytes);

}  // namespace tonadex::platform
