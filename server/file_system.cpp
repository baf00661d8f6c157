#include "server/file_system.h"

#include <cerrno>
#include <string_view>
#include <system_error>

#ifdef _WIN32
#include <windows.h>
#else
#include <fcntl.h>
#include <sys/file.h>
#include <sys/resource.h>
#include <unistd.h>
#endif

namespace tonadex::server {
namespace {

namespace fs = std::filesystem;

constexpr std::string_view kLockName = ".candado";

}  // namespace

#ifdef _WIN32

void SyncFiles(const fs::path&) {}

std::unique_ptr<FolderLock> FolderLock::Try(const fs::path& folder) {
  const HANDLE handle = CreateFileW((folder / kLockName).c_str(), GENERIC_WRITE, 0, nullptr,
                                    OPEN_ALWAYS, FILE_ATTRIBUTE_HIDDEN, nullptr);
  if (handle != INVALID_HANDLE_VALUE) {
    return std::unique_ptr<FolderLock>(new FolderLock(reinterpret_cast<std::intptr_t>(handle)));
  }
  const DWORD error = GetLastError();
  if (error == ERROR_SHARING_VIOLATION) {
    return nullptr;
  }
  throw fs::filesystem_error("lock", folder,
                             std::error_code(static_cast<int>(error), std::system_category()));
}

FolderLock::~FolderLock() {
  CloseHandle(reinterpret_cast<HANDLE>(handle_));
}

void RaiseOpenFileLimit() {}

#else

void SyncFiles(const fs::path& folder) {
  const int handle = ::open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
  if (handle >= 0) {
    ::syncfs(handle);
    ::close(handle);
  }
}

std::unique_ptr<FolderLock> FolderLock::Try(const fs::path& folder) {
  const int file = ::open((folder / kLockName).c_str(), O_RDWR | O_CREAT | O_CLOEXEC, 0644);
  if (file >= 0 && ::flock(file, LOCK_EX | LOCK_NB) == 0) {
    return std::unique_ptr<FolderLock>(new FolderLock(file));
  }
  const std::error_code error(errno, std::generic_category());
  if (file >= 0) {
    ::close(file);
  }
  if (error == std::errc::operation_would_block) {
    return nullptr;
  }
  throw fs::filesystem_error("lock", folder, error);
}

FolderLock::~FolderLock() {
  ::close(static_cast<int>(handle_));
}

void RaiseOpenFileLimit() {
  rlimit limit{};
  if (::getrlimit(RLIMIT_NOFILE, &limit) == 0) {
    limit.rlim_cur = limit.rlim_max;
    ::setrlimit(RLIMIT_NOFILE, &limit);
  }
}

#endif

}  // namespace tonadex::server
