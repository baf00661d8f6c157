#pragma once

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

// What the server asks of the system's files beyond the standard library.
namespace tonadex::server {

enum class CreateResult {
  kCreated,  // complete and on the disk, name included: it outlives a kill and a loss of power
  kExists,   // there is a file of that name already; it stays as it is
  kFailed,
};

// Creates the file with these bytes, or leaves no trace of that name. Readers never see a part.
CreateResult CreateDurably(const std::filesystem::path& folder, const std::filesystem::path& name,
                           std::string_view bytes);

// The same without waiting for the disk; SyncFiles makes many of them last at once.
CreateResult CreateWhole(const std::filesystem::path& folder, const std::filesystem::path& name,
                         std::string_view bytes);
void SyncFiles(const std::filesystem::path& folder);

// Removes what interrupted calls of CreateDurably or CreateWhole left behind. Nobody else may write
// meanwhile.
void RemoveUnfinished(const std::filesystem::path& folder);

struct FileHead {
  std::string bytes;
  std::uintmax_t size = 0;    // of the whole file
  std::int64_t modified = 0;  // a time stamp that only serves to compare
};

// The first `maxBytes` of a file, its size and its time. False when it cannot be read or is no
// ordinary file; a symbolic link is none, wherever it leads.
bool ReadHead(const std::filesystem::path& file, std::size_t maxBytes, FileHead& head);

// All of a file. None also when it is larger than `maxBytes`, or changed while it was read.
std::optional<std::string> ReadWhole(const std::filesystem::path& file, std::size_t maxBytes);

// Keeps other programs (and other locks of this one) from writing to a folder; ends with the
// program in every case.
class FolderLock {
 public:
  // Null when somebody else holds it. Throws std::filesystem::filesystem_error when the lock file
  // cannot be made.
  static std::unique_ptr<FolderLock> Try(const std::filesystem::path& folder);
  ~FolderLock();
  FolderLock(const FolderLock&) = delete;
  FolderLock& operator=(const FolderLock&) = delete;

 private:
  explicit FolderLock(std::intptr_t handle) : handle_(handle) {}
  std::intptr_t handle_;
};

// As many open files as the system allows this program.
void RaiseOpenFileLimit();

}  // namespace tonadex::server
