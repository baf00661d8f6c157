#pragma once

#include <cstdint>
#include <filesystem>
#include <functional>
#include <stop_token>
#include <string>
#include <string_view>
#include <vector>

// Lists the files of a folder without opening them.
namespace tonadex::files {

// A file's metadata. Times are nanoseconds since 1970 in the file system's resolution.
struct FileStatus {
  std::uintmax_t size = 0;    // bytes
  std::int64_t modified = 0;  // last change of the content; programs can set it
  std::int64_t changed = 0;   // last change of content or metadata; on Windows the creation
  std::uint64_t number = 0;   // inode; 0 on Windows
  bool operator==(const FileStatus&) const = default;
};

struct ListedFile {
  std::string name;  // Windows-1252; "?" for characters that it lacks
  FileStatus status;
};

// The regular files (not symbolic links) whose name `wanted` accepts, in no particular order.
// Incomplete when `stop` is requested. Throws std::filesystem::filesystem_error when the folder
// cannot be read.
std::vector<ListedFile> ListFiles(const std::filesystem::path& folder,
                                  const std::function<bool(std::string_view name)>& wanted,
                                  const std::stop_token& stop = {});

}  // namespace tonadex::files
