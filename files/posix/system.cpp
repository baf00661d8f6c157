#include "files/system.h"

#include <dirent.h>
#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <future>
#include <memory>
#include <span>

#include "core/windows1252.h"

namespace tonadex::files::system {
namespace {

namespace fs = std::filesystem;

constexpr mode_t kUsualMode = 0666;  // before the umask
constexpr mode_t kOwnerMode = 0600;

std::error_code LastError() {
  return {errno, std::generic_category()};
}

int Number(std::intptr_t handle) {
  return static_cast<int>(handle);
}

std::int64_t Nanoseconds(const timespec& time) {
  return time.tv_sec * std::int64_t{1'000'000'000} + time.tv_nsec;
}

std::optional<FileStatus> RegularStatus(const struct stat& status) {
  if (!S_ISREG(status.st_mode)) {
    return std::nullopt;
  }
  return FileStatus{static_cast<std::uintmax_t>(status.st_size), Nanoseconds(status.st_mtim),
                    Nanoseconds(status.st_ctim), status.st_ino};
}

// A rename is durable only once the folder is synced. A file system that cannot sync folders counts
// as success.
bool SyncFolder(const fs::path& folder) {
  const File opened(
      ::open(folder.empty() ? "." : folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
  return !opened || opened.Sync() || errno == EINVAL || errno == ENOTSUP;
}

}  // namespace

std::optional<std::size_t> File::Read(char* target, std::size_t size) const {
  for (;;) {
    const ssize_t count = ::read(Number(handle_), target, size);
    if (count >= 0) {
      return static_cast<std::size_t>(count);
    }
    if (errno != EINTR) {
      return std::nullopt;
    }
  }
}

std::optional<FileStatus> File::Status() const {
  struct stat status = {};
  return ::fstat(Number(handle_), &status) == 0 ? RegularStatus(status) : std::nullopt;
}

bool File::Write(std::string_view bytes) const {
  while (!bytes.empty()) {
    const ssize_t written = ::write(Number(handle_), bytes.data(), bytes.size());
    if (written < 0 && errno != EINTR) {
      return false;
    }
    bytes.remove_prefix(written < 0 ? 0 : static_cast<std::size_t>(written));
  }
  return true;
}

bool File::Sync() const {
  return ::fsync(Number(handle_)) == 0;
}

bool File::Close() {
  const std::intptr_t handle = std::exchange(handle_, kNone);
  return handle == kNone || ::close(Number(handle)) == 0;
}

File OpenRegular(const fs::path& file, Links links) {
  File opened(::open(file.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY |
                                       (links == Links::kRefuse ? O_NOFOLLOW : 0)));
  return opened.Status() ? std::move(opened) : File();
}

File CreateLocked(const fs::path& file, bool ownerOnly, std::error_code& failure) {
  const int number = ::open(file.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC,
                            ownerOnly ? kOwnerMode : kUsualMode);
  failure = number < 0 ? LastError() : std::error_code();
  if (number >= 0) {
    ::flock(number, LOCK_EX | LOCK_NB);  // without lock support RemoveUnlocked never removes it
  }
  return File(number);
}

void RemoveUnlocked(const fs::path& file) {
  const int number = ::open(file.c_str(), O_RDONLY | O_NOFOLLOW | O_CLOEXEC | O_NONBLOCK);
  const File opened(number);
  if (opened && ::flock(number, LOCK_EX | LOCK_NB) == 0) {
    ::unlink(file.c_str());
  }
}

bool MoveReplacing(const fs::path& from, const fs::path& to, bool wait) {
  if (::rename(from.c_str(), to.c_str()) != 0) {
    return false;
  }
  if (wait) {
    SyncFolder(to.parent_path());
  }
  return true;
}

// link() never replaces an existing file, rename() does. On a file system without hard links,
// lstat() and rename() are used instead, with a race between them.
bool MoveToNewName(const fs::path& from, const fs::path& to, bool wait, std::error_code& failure) {
  if (::link(from.c_str(), to.c_str()) != 0) {
    failure = LastError();
    struct stat status = {};
    const bool exists = ::lstat(to.c_str(), &status) == 0;
    if (exists || ::rename(from.c_str(), to.c_str()) != 0) {
      failure = exists ? std::make_error_code(std::errc::file_exists) : LastError();
      return false;
    }
  }
  if (!wait || SyncFolder(to.parent_path())) {
    return true;
  }
  failure = LastError();
  ::unlink(to.c_str());
  return false;
}

}  // namespace tonadex::files::system

namespace tonadex::files {
namespace {

struct FolderCloser {
  void operator()(DIR* folder) const { ::closedir(folder); }
};

constexpr std::size_t kStatusTasks = 4;         // tasks that read statuses at the same time
constexpr std::size_t kMinFilesOfTask = 1'000;  // fewer are read sooner than a thread starts

// Replaces each name, which is the folder entry's, by its text, or by "" when it is no regular
// file.
void ReadStatus(int folder, std::span<ListedFile> files, const std::stop_token& stop) {
  for (ListedFile& file : files) {
    struct stat status = {};
    const bool read = !stop.stop_requested() &&
                      ::fstatat(folder, file.name.c_str(), &status, AT_SYMLINK_NOFOLLOW) == 0;
    const auto regular = read ? system::RegularStatus(status) : std::nullopt;
    file = regular ? ListedFile{core::FromUtf8(file.name), *regular} : ListedFile{};
  }
}

// In the order of the inodes: a folder returns its entries in another order, in which a disk would
// have to seek for nearly every file.
void ReadStatuses(int folder, std::vector<ListedFile>& files, const std::stop_token& stop) {
  std::ranges::sort(files, {}, [](const ListedFile& file) { return file.status.number; });
  const std::size_t part = std::max(files.size() / kStatusTasks + 1, kMinFilesOfTask);
  std::vector<std::future<void>> tasks;
  std::span<ListedFile> rest(files);
  while (rest.size() > part) {
    const auto some = rest.first(part);
    tasks.push_back(std::async([=, &stop] { ReadStatus(folder, some, stop); }));
    rest = rest.subspan(part);
  }
  ReadStatus(folder, rest, stop);
  for (std::future<void>& task : tasks) {
    task.get();
  }
}

}  // namespace

std::vector<ListedFile> ListFiles(const std::filesystem::path& folder,
                                  const std::function<bool(std::string_view)>& wanted,
                                  const std::stop_token& stop) {
  const std::unique_ptr<DIR, FolderCloser> opened(::opendir(folder.c_str()));
  std::vector<ListedFile> files;
  while (opened && !stop.stop_requested()) {
    errno = 0;
    const dirent* entry = ::readdir(opened.get());
    if (entry == nullptr) {
      break;
    }
    if (wanted(core::FromUtf8(entry->d_name))) {
      files.push_back({entry->d_name, {.number = entry->d_ino}});
    }
  }
  if (!opened || (errno != 0 && !stop.stop_requested())) {
    throw std::filesystem::filesystem_error("list", folder, system::LastError());
  }
  ReadStatuses(::dirfd(opened.get()), files, stop);
  std::erase_if(files, [](const ListedFile& file) { return file.name.empty(); });
  return files;
}

}  // namespace tonadex::files
