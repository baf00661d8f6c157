#pragma once

#include <cstdint>
#include <filesystem>
#include <functional>
#include <stop_token>
#include <string>
#include <string_view>
#include <vector>

// The files of a folder, without opening them.
namespace tonadex::files {

// What can be seen of a file's state without reading it. Times are nanoseconds since 1970, as fine
// as the file system keeps them.
struct FileStatus {
  std::uintmax_t size = 0;    // bytes
  std::int64_t modified = 0;  // last change of the content; programs can set it
  std::int64_t changed = 0;   // last change of any kind; on Windows the file's creation
  std::uint64_t number = 0;   // the file's own in its file system; 0 on Windows
  bool operator==(const FileStatus&) const = default;
};

struct ListedFile {
  std::string name;  // Windows-1252; "?" for characters that it lacks
  FileStatus status;
};

// The regular files whose name `wanted` accepts, in any order; symbolic links are none. Incomplete
// when it is told to stop. Throws std::filesystem::filesystem_error when the folder cannot be read.
std::vector<ListedFile> ListFiles(const std::filesystem::path& folder,
                                  const std::function<bool(std::string_view name)>& wanted,
                                  const std::stop_token& stop = {});

}  // namespace tonadex::files
