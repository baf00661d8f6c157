#pragma once

#include <cstdint>
#include <filesystem>
#include <memory>

// What the server asks of the system beyond reading and writing files.
namespace tonadex::server {

// Puts on the disk what was written to the folder; on Windows the system does so within seconds.
void SyncFiles(const std::filesystem::path& folder);

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
