#pragma once

#include <cstdint>
#include <filesystem>
#include <memory>

// System calls that the server needs besides reading and writing files.
namespace tonadex::server {

// Writes everything in the folder to the disk; does nothing on Windows, where the system does so
// within seconds.
void SyncFiles(const std::filesystem::path& folder);

// An exclusive lock on a folder, against other programs and other locks of this one. The system
// releases it when the program ends, however that happens.
class FolderLock {
 public:
  // Null when another lock exists. Throws std::filesystem::filesystem_error when the lock file
  // cannot be created.
  static std::unique_ptr<FolderLock> Try(const std::filesystem::path& folder);
  ~FolderLock();
  FolderLock(const FolderLock&) = delete;
  FolderLock& operator=(const FolderLock&) = delete;

 private:
  explicit FolderLock(std::intptr_t handle) : handle_(handle) {}
  std::intptr_t handle_;
};

// Raises this program's limit of open files to the maximum that the system allows.
void RaiseOpenFileLimit();

}  // namespace tonadex::server
