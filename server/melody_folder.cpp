#include "server/melody_folder.h"

#include <algorithm>
#include <chrono>
#include <iterator>
#include <tuple>
#include <unordered_map>
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
constexpr std::string_view kOldTemporaryPrefix = ".subida-";  // version 1.0 may have left some

bool IsMelodyName(std::string_view fileName) {
  return ParseMelodyName(fileName).has_value();
}

fs::path PathOf(const fs::path& folder, std::string_view fileName) {
  return folder / files::PathFromText(fileName);
}

// None for a file that is no melody.
std::optional<StoredMelody> ReadMelody(const fs::path& folder, std::string fileName) {
  const auto head = files::ReadSharedHead(PathOf(folder, fileName), kNamePrefixBytes);
  if (!head || head->status.size > kMaxFileBytes) {
    return std::nullopt;
  }
  std::string description = DescriptionOf(head->bytes, fileName);
  return StoredMelody{std::move(fileName), std::move(description), head->status};
}

std::vector<StoredMelody> LoadIndex(const fs::path& folder) {
  return DecodeIndex(files::ReadShared(folder / kIndexName, kMaxIndexBytes).value_or(""));
}

// The folder's own clock, which on a network drive is another machine's; none where the folder
// cannot be written.
std::optional<std::int64_t> FolderTime(const fs::path& folder) {
  const files::TemporaryFile probe(folder / kIndexName);
  const auto head = files::ReadSharedHead(probe.Path(), 0);
  return head ? std::optional(head->status.modified) : std::nullopt;
}

// A file that changed just before it was read may have changed once more within the same step of
// the clock, and look the same: it is left out, so that the next start opens it again. A failure
// costs that start time and nothing else.
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

// A file of that name stays as it is.
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
    : folder_(std::move(folder)), access_(access), timeStep_(timeStep) {
  if (access_ == ShelfAccess::kReadWrite) {
    files::RemoveTemporaryFiles(folder_, kOldTemporaryPrefix);
  }
}

MelodyFolder::~MelodyFolder() {
  try {
    StoreCreated();
  } catch (const std::exception&) {
    // The next start opens these files.
  }
}

std::vector<StoredMelody> MelodyFolder::Read(const std::stop_token& stop) {
  const auto began =
      access_ == ShelfAccess::kReadWrite ? FolderTime(folder_) : std::optional<std::int64_t>();
  std::vector<StoredMelody> known = LoadIndex(folder_);
  std::unordered_map<std::string_view, StoredMelody*> byName(known.size());
  for (StoredMelody& melody : known) {
    byName.emplace(melody.fileName, &melody);
  }
  std::vector<StoredMelody> melodies;
  std::size_t unchanged = 0;
  for (files::ListedFile& file : files::ListFiles(folder_, IsMelodyName, stop)) {
    const auto old = byName.find(file.name);
    if (old != byName.end() && old->second->status == file.status) {
      melodies.push_back(std::move(*old->second));
      byName.erase(old);
      ++unchanged;
    } else if (auto melody = ReadMelody(folder_, std::move(file.name))) {
      melodies.push_back(*std::move(melody));
    }
    if (stop.stop_requested()) {
      return melodies;
    }
  }
  std::ranges::sort(melodies, {}, [](const StoredMelody& melody) {
    return std::tie(melody.status.modified, melody.fileName);
  });
  if (began && unchanged < std::max(melodies.size(), known.size())) {
    SaveIndex(folder_, melodies, *began - timeStep_.count());
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
  std::vector<StoredMelody> melodies = LoadIndex(folder_);
  for (std::string& fileName : created_) {
    if (std::chrono::steady_clock::now() > end) {
      break;
    }
    if (auto melody = ReadMelody(folder_, std::move(fileName))) {
      melodies.push_back(*std::move(melody));
    }
  }
  SaveIndex(folder_, melodies, *began - timeStep_.count());
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
