#pragma once

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <optional>
#include <string_view>
#include <system_error>
#include <utility>

#include "files/list.h"

// The operating system calls of this folder; not used outside it.
namespace tonadex::files::system {

// An open file, closed at the end of the scope.
class File {
 public:
  File() = default;
  explicit File(std::intptr_t handle) : handle_(handle) {}
  File(File&& other) noexcept : handle_(std::exchange(other.handle_, kNone)) {}
  File& operator=(File&& other) noexcept {
    std::swap(handle_, other.handle_);
    return *this;
  }
  ~File() { Close(); }

  explicit operator bool() const { return handle_ != kNone; }
  // The number of bytes read, 0 at the end of the file; nullopt after an error.
  std::optional<std::size_t> Read(char* target, std::size_t size) const;
  std::optional<FileStatus> Status() const;
  bool Write(std::string_view bytes) const;
  // Waits until the content is on the disk.
  bool Sync() const;
  // False when the system reports a late write error.
  bool Close();

 private:
  static constexpr std::intptr_t kNone = -1;
  std::intptr_t handle_ = kNone;
};

enum class Links { kFollow, kRefuse };

// Opens a regular file for reading; never blocks, and fails for anything but a regular file.
File OpenRegular(const std::filesystem::path& file, Links links);

// Creates a new file for writing; fails when it exists. It is locked while it is open.
File CreateLocked(const std::filesystem::path& file, bool ownerOnly, std::error_code& failure);

// Removes the file unless a program has it open through CreateLocked.
void RemoveUnlocked(const std::filesystem::path& file);

// Both paths are in the same folder. `wait`: return only when the new name is on the disk, where
// the file system supports that.
bool MoveReplacing(const std::filesystem::path& from, const std::filesystem::path& to, bool wait);
// `failure` is std::errc::file_exists when `to` exists; `to` is unchanged. `from` may remain.
bool MoveToNewName(const std::filesystem::path& from, const std::filesystem::path& to, bool wait,
                   std::error_code& failure);

}  // namespace tonadex::files::system
