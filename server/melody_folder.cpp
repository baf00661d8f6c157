#include "server/melody_folder.h"

#include <algorithm>
#include <chrono>
#include <future>
#include <iterator>
#include <utility>

#include "files/paths.h"
#include "files/read.h"
#include "server/file_system.h"
#include "server/limits.h"
#include "server/melody_name.h"

namespace tonadex::server {
namespace {

namespace fs = std::filesystem;

constexpr std::string_view kFillingMark = ".llenando";
constexpr std::string_view kIndexName = ".indice";
constexpr std::string_view kOldTemporaryPrefix = ".subida-";  // leftovers of version 1.0

bool IsMelodyName(std::string_view fileName) {
  return ParseMelodyName(fileName).has_value();
}

bool IsUnfinished(std::string_view fileName) {
  return files::IsTemporaryName(fileName) || fileName.starts_with(kOldTemporaryPrefix);
}

fs::path PathOf(const fs::path& folder, std::string_view fileName) {
  return folder / files::PathFromText(fileName);
}

// Skips files that are not melodies.
void AddFromFile(StoredMelodies& melodies, const fs::path& folder, std::string fileName) {
  const auto head = files::ReadSharedHead(PathOf(folder, fileName), kNamePrefixBytes);
  if (head && head->status.size <= kMaxFileBytes) {
    const std::string& description =
        melodies.texts.emplace_back(DescriptionOf(head->bytes, fileName));
    melodies.list.push_back(
        {melodies.texts.emplace_back(std::move(fileName)), description, head->status});
  }
}

StoredMelodies LoadIndex(const fs::path& folder) {
  StoredMelodies known;
  known.texts.push_back(files::ReadShared(folder / kIndexName, kMaxIndexBytes).value_or(""));
  known.list = DecodeIndex(known.texts.back());
  return known;
}

// Sort key: oldest first.
using Order = std::pair<std::int64_t, std::string_view>;
Order OrderOf(const files::ListedFile& file) {
  return {file.status.modified, file.name};
}
Order OrderOf(const StoredMelody& melody) {
  return {melody.status.modified, melody.fileName};
}

void Sort(std::vector<StoredMelody>& melodies) {
  const auto order = [](const StoredMelody& melody) { return OrderOf(melody); };
  if (!std::ranges::is_sorted(melodies, {}, order)) {
    std::ranges::sort(melodies, {}, order);
  }
}

// The current time of the folder's file system, which on a network drive is another machine's
// clock. Empty when the folder cannot be written.
std::optional<std::int64_t> FolderTime(const fs::path& folder) {
  const files::TemporaryFile probe(folder / kIndexName);
  const auto head = files::ReadSharedHead(probe.Path(), 0);
  return head ? std::optional(head->status.modified) : std::nullopt;
}

// Leaves out files that changed just before they were read: another change within the same step of
// the clock would leave the same time, so the next start must open them again. A failure only makes
// the next start slower.
void SaveIndex(const fs::path& folder, const std::vector<StoredMelody>& melodies,
               std::int64_t settledBefore) {
  files::Replace(folder / kIndexName, EncodeIndex(melodies, settledBefore),
                 files::Durability::kRename);
}

bool HoldsMelodies(const fs::path& folder) {
  return std::any_of(fs::directory_iterator(folder), fs::directory_iterator(), [](const auto& e) {
    return IsMelodyName(files::TextFromPath(e.path().filename()));
  });
}

// Keeps an existing file.
void CreateOrThrow(const fs::path& file, std::string_view bytes, files::Durability durability) {
  if (files::Create(file, bytes, durability) == files::CreateResult::kFailed) {
    throw fs::filesystem_error("create", file, std::make_error_code(std::errc::io_error));
  }
}

}  // namespace

std::string DescriptionOf(std::string_view contents, std::string_view fileName) {
  return Description(contents.substr(0, contents.find_first_of("\r\n")),
                     fileName.substr(0, fileName.find('.')));
}

MelodyFolder::MelodyFolder(fs::path folder, ShelfAccess access, std::chrono::nanoseconds timeStep)
    : folder_(std::move(folder)), access_(access), timeStep_(timeStep) {}

MelodyFolder::~MelodyFolder() {
  try {
    StoreCreated();
  } catch (const std::exception&) {
    // The next start opens the files that are missing from the index.
  }
}

bool MelodyFolder::Exists() const noexcept {
  std::error_code ignored;
  return fs::is_directory(folder_, ignored);
}

// Merges the directory listing with the known melodies; both are sorted alike.
StoredMelodies MelodyFolder::Read(const std::stop_token& stop) {
  const bool writable = access_ == ShelfAccess::kReadWrite;
  const auto began = writable ? FolderTime(folder_) : std::nullopt;
  const auto all = [](std::string_view) { return true; };
  auto loading = std::async([this] { return LoadIndex(folder_); });
  std::vector<files::ListedFile> files = files::ListFiles(folder_, all, stop);
  std::ranges::sort(files, {}, [](const files::ListedFile& file) { return OrderOf(file); });
  StoredMelodies melodies = loading.get();
  const std::vector<StoredMelody> known = std::exchange(melodies.list, {});
  melodies.list.reserve(files.size());
  std::size_t unchanged = 0;
  auto old = known.begin();
  for (files::ListedFile& file : files) {
    if (stop.stop_requested()) {
      return melodies;
    }
    while (old != known.end() && OrderOf(*old) < OrderOf(file)) {
      ++old;
    }
    if (old != known.end() && old->fileName == file.name && old->status == file.status) {
      melodies.list.push_back(*old);
      ++unchanged;
    } else if (IsMelodyName(file.name)) {
      AddFromFile(melodies, folder_, std::move(file.name));
    } else if (writable && IsUnfinished(file.name)) {
      files::RemoveTemporaryFile(PathOf(folder_, file.name));
    }
  }
  Sort(melodies.list);
  if (began && unchanged < std::max(melodies.list.size(), known.size())) {
    SaveIndex(folder_, melodies.list, *began - timeStep_.count());
  }
  const std::lock_guard lock(mutex_);
  created_.clear();
  return melodies;
}

std::optional<std::string> MelodyFolder::Melody(std::string_view fileName) const {
  return IsMelodyName(fileName) ? files::ReadShared(PathOf(folder_, fileName), kMaxFileBytes)
                                : std::nullopt;
}

files::CreateResult MelodyFolder::Create(const std::string& fileName, std::string_view contents) {
  const auto result = files::Create(PathOf(folder_, fileName), contents);
  if (result == files::CreateResult::kCreated) {
    const std::lock_guard lock(mutex_);
    created_.push_back(fileName);
  }
  return result;
}

void MelodyFolder::StoreCreated() {
  const auto began = created_.empty() ? std::nullopt : FolderTime(folder_);
  if (!began) {
    return;
  }
  const auto end = std::chrono::steady_clock::now() + std::chrono::milliseconds(kStopGraceMs);
  StoredMelodies melodies = LoadIndex(folder_);
  for (std::string& fileName : created_) {
    if (std::chrono::steady_clock::now() > end) {
      break;
    }
    AddFromFile(melodies, folder_, std::move(fileName));
  }
  Sort(melodies.list);
  SaveIndex(folder_, melodies.list, *began - timeStep_.count());
}

void FillEmptyShelf(const fs::path& folder, const fs::path& source) {
  fs::create_directories(folder);
  std::error_code ignored;
  if (!fs::is_directory(source, ignored) ||
      (HoldsMelodies(folder) && !fs::exists(folder / kFillingMark))) {
    return;
  }
  CreateOrThrow(folder / kFillingMark, {}, files::Durability::kDisk);
  for (const files::ListedFile& file : files::ListFiles(source, IsMelodyName)) {
    const fs::path name = files::PathFromText(file.name);
    if (const auto bytes = files::ReadShared(source / name, kMaxFileBytes)) {
      CreateOrThrow(folder / name, *bytes, files::Durability::kRename);
    }
  }
  SyncFiles(folder);
  fs::remove(folder / kFillingMark);
}

}  // namespace tonadex::server
