#include "server/file_system.h"

#include <algorithm>
#include <atomic>
#include <cerrno>
#include <fstream>
#include <system_error>

#ifdef _WIN32
#include <windows.h>
#else
#include <fcntl.h>
#include <sys/file.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>
#endif

namespace tonadex::server {
namespace {

namespace fs = std::filesystem;

constexpr std::string_view kUnfinishedPrefix = ".subida-";
constexpr std::string_view kLockName = ".candado";

enum class Disk { kNow, kLater };

fs::path UnfinishedPath(const fs::path& folder) {
  static std::atomic<std::uint64_t> counter{0};
  return folder / (std::string(kUnfinishedPrefix) + std::to_string(++counter));
}

#ifdef _WIN32

bool WriteFileBytes(const fs::path& file, std::string_view bytes, Disk disk) {
  const HANDLE handle = CreateFileW(file.c_str(), GENERIC_WRITE, 0, nullptr, CREATE_ALWAYS,
                                    FILE_ATTRIBUTE_NORMAL, nullptr);
  if (handle == INVALID_HANDLE_VALUE) {
    return false;
  }
  DWORD written = 0;
  const bool good =
      WriteFile(handle, bytes.data(), static_cast<DWORD>(bytes.size()), &written, nullptr) != 0 &&
      written == bytes.size() && (disk == Disk::kLater || FlushFileBuffers(handle) != 0);
  CloseHandle(handle);
  return good;
}

CreateResult MoveWithoutReplacing(const fs::path& from, const fs::path& to) {
  if (MoveFileExW(from.c_str(), to.c_str(), MOVEFILE_WRITE_THROUGH) != 0) {
    return CreateResult::kCreated;
  }
  const DWORD error = GetLastError();
  const bool exists = error == ERROR_ALREADY_EXISTS || error == ERROR_FILE_EXISTS;
  return exists ? CreateResult::kExists : CreateResult::kFailed;
}

bool SyncFolder(const fs::path&) {
  return true;  // MOVEFILE_WRITE_THROUGH did it
}

#else

bool WriteAll(int file, std::string_view bytes) {
  while (!bytes.empty()) {
    const ssize_t written = ::write(file, bytes.data(), bytes.size());
    if (written < 0 && errno == EINTR) {
      continue;
    }
    if (written <= 0) {
      return false;
    }
    bytes.remove_prefix(static_cast<std::size_t>(written));
  }
  return true;
}

bool WriteFileBytes(const fs::path& path, std::string_view bytes, Disk disk) {
  const int file = ::open(path.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0644);
  if (file < 0) {
    return false;
  }
  const bool good = WriteAll(file, bytes) && (disk == Disk::kLater || ::fsync(file) == 0);
  return ::close(file) == 0 && good;
}

// A hard link never replaces; renaming does. File systems without links get the second best, which
// is safe as long as this program alone writes to the folder.
CreateResult MoveWithoutReplacing(const fs::path& from, const fs::path& to) {
  if (::link(from.c_str(), to.c_str()) == 0) {
    return CreateResult::kCreated;  // the caller removes the other name
  }
  if (errno == EEXIST) {
    return CreateResult::kExists;
  }
  std::error_code error;
  if (fs::exists(to, error)) {
    return CreateResult::kExists;
  }
  return ::rename(from.c_str(), to.c_str()) == 0 ? CreateResult::kCreated : CreateResult::kFailed;
}

bool SyncFolder(const fs::path& folder) {
  const int handle = ::open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
  if (handle < 0) {
    return false;
  }
  const bool good = ::fsync(handle) == 0;
  ::close(handle);
  return good;
}

#endif

CreateResult Create(const fs::path& folder, const fs::path& name, std::string_view bytes,
                    Disk disk) {
  const fs::path unfinished = UnfinishedPath(folder);
  CreateResult result = CreateResult::kFailed;
  if (WriteFileBytes(unfinished, bytes, disk)) {
    result = MoveWithoutReplacing(unfinished, folder / name);
  }
  std::error_code ignored;
  fs::remove(unfinished, ignored);
  return result;
}

}  // namespace

CreateResult CreateDurably(const fs::path& folder, const fs::path& name, std::string_view bytes) {
  const CreateResult result = Create(folder, name, bytes, Disk::kNow);
  if (result == CreateResult::kCreated && !SyncFolder(folder)) {
    std::error_code ignored;
    fs::remove(folder / name, ignored);
    return CreateResult::kFailed;
  }
  return result;
}

CreateResult CreateWhole(const fs::path& folder, const fs::path& name, std::string_view bytes) {
  return Create(folder, name, bytes, Disk::kLater);
}

void RemoveUnfinished(const fs::path& folder) {
  std::error_code ignored;
  std::vector<fs::path> unfinished;
  for (const auto& entry : fs::directory_iterator(folder, ignored)) {
    if (entry.path().filename().string().starts_with(kUnfinishedPrefix)) {
      unfinished.push_back(entry.path());
    }
  }
  for (const fs::path& file : unfinished) {
    fs::remove(file, ignored);
  }
}

#ifdef _WIN32

void SyncFiles(const fs::path&) {}  // the system does so within seconds

bool ReadHead(const fs::path& path, std::size_t maxBytes, FileHead& head) {
  std::error_code error;
  const auto modified = fs::last_write_time(path, error);
  head.size = fs::file_size(path, error);
  std::ifstream input(path, std::ios::binary);
  if (error || !fs::is_regular_file(fs::symlink_status(path, error)) || !input) {
    return false;
  }
  head.modified = modified.time_since_epoch().count();
  head.bytes.resize(maxBytes);
  input.read(head.bytes.data(), static_cast<std::streamsize>(maxBytes));
  head.bytes.resize(static_cast<std::size_t>(input.gcount()));
  return true;
}

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

// Plain system calls: a start with a hundred thousand files is short with them.
bool ReadHead(const fs::path& path, std::size_t maxBytes, FileHead& head) {
  const int file = ::open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOFOLLOW);
  if (file < 0) {
    return false;
  }
  struct stat status {};
  bool good = ::fstat(file, &status) == 0 && S_ISREG(status.st_mode);
  if (good) {
    constexpr std::int64_t kNanoseconds = 1'000'000'000;
    head.modified = status.st_mtim.tv_sec * kNanoseconds + status.st_mtim.tv_nsec;
    head.size = static_cast<std::uintmax_t>(status.st_size);
    head.bytes.resize(std::min(maxBytes, static_cast<std::size_t>(status.st_size)));
    const ssize_t count = ::pread(file, head.bytes.data(), head.bytes.size(), 0);
    good = count >= 0;
    head.bytes.resize(good ? static_cast<std::size_t>(count) : 0);
  }
  ::close(file);
  return good;
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

std::optional<std::string> ReadWhole(const fs::path& file, std::size_t maxBytes) {
  FileHead head, after;
  if (!ReadHead(file, maxBytes, head) || head.bytes.size() != head.size ||
      !ReadHead(file, 0, after) || after.size != head.size || after.modified != head.modified) {
    return std::nullopt;
  }
  return std::move(head.bytes);
}

}  // namespace tonadex::server
