#include "files/system.h"

#include <windows.h>

#include <algorithm>
#include <memory>
#include <string>

#include "files/paths.h"

namespace tonadex::files::system {
namespace {

namespace fs = std::filesystem;

constexpr DWORD kMostBytes = 1u << 30;  // per call of ReadFile or WriteFile

HANDLE Handle(std::intptr_t handle) {
  return reinterpret_cast<HANDLE>(handle);
}

File Opened(HANDLE handle) {
  return File(reinterpret_cast<std::intptr_t>(handle));  // INVALID_HANDLE_VALUE is -1
}

std::error_code LastError() {
  return {static_cast<int>(GetLastError()), std::system_category()};
}

DWORD Count(std::size_t size) {
  return static_cast<DWORD>(std::min<std::size_t>(size, kMostBytes));
}

std::int64_t Nanoseconds(const FILETIME& time) {
  constexpr std::int64_t kTicksUntil1970 = 116'444'736'000'000'000;  // of 100 ns
  const std::int64_t ticks = std::int64_t{time.dwHighDateTime} << 32 | time.dwLowDateTime;
  return (ticks - kTicksUntil1970) * 100;
}

template <typename Info>
FileStatus StatusOf(const Info& info) {
  return {std::uintmax_t{info.nFileSizeHigh} << 32 | info.nFileSizeLow,
          Nanoseconds(info.ftLastWriteTime), Nanoseconds(info.ftCreationTime), 0};
}

bool Move(const fs::path& from, const fs::path& to, DWORD how, std::error_code& failure) {
  SetFileAttributesW(from.c_str(), FILE_ATTRIBUTE_NORMAL);  // the temporary file is hidden
  if (MoveFileExW(from.c_str(), to.c_str(), how) != 0) {
    return true;
  }
  failure = LastError();
  return false;
}

}  // namespace

std::optional<std::size_t> File::Read(char* target, std::size_t size) const {
  DWORD count = 0;
  return ReadFile(Handle(handle_), target, Count(size), &count, nullptr) != 0
             ? std::optional<std::size_t>(count)
             : std::nullopt;
}

std::optional<FileStatus> File::Status() const {
  BY_HANDLE_FILE_INFORMATION info = {};
  if (GetFileType(Handle(handle_)) != FILE_TYPE_DISK ||
      GetFileInformationByHandle(Handle(handle_), &info) == 0) {
    return std::nullopt;
  }
  return StatusOf(info);
}

bool File::Write(std::string_view bytes) const {
  while (!bytes.empty()) {
    DWORD count = 0;
    if (WriteFile(Handle(handle_), bytes.data(), Count(bytes.size()), &count, nullptr) == 0) {
      return false;
    }
    bytes.remove_prefix(count);
  }
  return true;
}

bool File::Sync() const {
  return FlushFileBuffers(Handle(handle_)) != 0;
}

bool File::Close() {
  const std::intptr_t handle = std::exchange(handle_, kNone);
  return handle == kNone || CloseHandle(Handle(handle)) != 0;
}

File OpenRegular(const fs::path& file, Links links) {
  if (links == Links::kRefuse &&
      (GetFileAttributesW(file.c_str()) & FILE_ATTRIBUTE_REPARSE_POINT) != 0) {
    return {};  // INVALID_FILE_ATTRIBUTES has this bit too
  }
  File opened = Opened(CreateFileW(file.c_str(), GENERIC_READ,
                                   FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE, nullptr,
                                   OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr));
  return opened.Status() ? std::move(opened) : File();
}

// Without FILE_SHARE_DELETE the file can be written through its path but not deleted while it is
// open. `ownerOnly` is not needed: only the user can read the folders of the user's profile.
File CreateLocked(const fs::path& file, bool /*ownerOnly*/, std::error_code& failure) {
  File opened = Opened(CreateFileW(file.c_str(), GENERIC_WRITE, FILE_SHARE_READ | FILE_SHARE_WRITE,
                                   nullptr, CREATE_NEW, FILE_ATTRIBUTE_HIDDEN, nullptr));
  failure = opened ? std::error_code() : LastError();
  return opened;
}

void RemoveUnlocked(const fs::path& file) {
  DeleteFileW(file.c_str());
}

bool MoveReplacing(const fs::path& from, const fs::path& to, bool wait) {
  std::error_code ignored;
  return Move(from, to, MOVEFILE_REPLACE_EXISTING | (wait ? MOVEFILE_WRITE_THROUGH : 0u), ignored);
}

bool MoveToNewName(const fs::path& from, const fs::path& to, bool wait, std::error_code& failure) {
  return Move(from, to, wait ? MOVEFILE_WRITE_THROUGH : 0u, failure);
}

}  // namespace tonadex::files::system

namespace tonadex::files {

std::vector<ListedFile> ListFiles(const std::filesystem::path& folder,
                                  const std::function<bool(std::string_view)>& wanted,
                                  const std::stop_token& stop) {
  constexpr DWORD kOthers =
      FILE_ATTRIBUTE_DIRECTORY | FILE_ATTRIBUTE_REPARSE_POINT | FILE_ATTRIBUTE_DEVICE;
  WIN32_FIND_DATAW found = {};
  const HANDLE search = FindFirstFileExW((folder / "*").c_str(), FindExInfoBasic, &found,
                                         FindExSearchNameMatch, nullptr, FIND_FIRST_EX_LARGE_FETCH);
  const std::unique_ptr<void, decltype(&FindClose)> closing(
      search == INVALID_HANDLE_VALUE ? nullptr : search, &FindClose);
  std::vector<ListedFile> files;
  for (BOOL more = closing != nullptr; more != 0 && !stop.stop_requested();
       more = FindNextFileW(search, &found)) {
    std::string name = TextFromPath(found.cFileName);
    if ((found.dwFileAttributes & kOthers) == 0 && wanted(name)) {
      files.push_back({std::move(name), system::StatusOf(found)});
    }
  }
  if (!stop.stop_requested() && GetLastError() != ERROR_NO_MORE_FILES) {
    throw std::filesystem::filesystem_error("list", folder, system::LastError());
  }
  return files;
}

}  // namespace tonadex::files
