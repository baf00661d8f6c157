#include "server/shelf.h"

#include <algorithm>
#include <mutex>
#include <random>
#include <utility>
#include <vector>

#include "files/paths.h"
#include "files/read.h"
#include "files/write.h"
#include "server/file_system.h"
#include "server/melody_name.h"

namespace tonadex::server {
namespace {

namespace fs = std::filesystem;

constexpr std::string_view kFillingMark = ".llenando";
constexpr std::string_view kOldTemporaryPrefix = ".subida-";  // version 1.0 may have left some

struct StoredMelody {
  std::int64_t modified = 0;
  std::string fileName;
  std::string description;
  auto operator<=>(const StoredMelody&) const = default;
};

std::string DescriptionOf(std::string_view contents, std::string_view fileName) {
  return Description(contents.substr(0, contents.find_first_of("\r\n")),
                     fileName.substr(0, fileName.find('.')));
}

// Oldest first; incomplete when it is told to stop.
std::vector<StoredMelody> ReadFolder(const fs::path& folder, const std::stop_token& stop) {
  std::vector<StoredMelody> melodies;
  for (const auto& entry : fs::directory_iterator(folder)) {
    if (stop.stop_requested()) {
      break;
    }
    std::string fileName = files::TextFromPath(entry.path().filename());
    if (!ParseMelodyName(fileName)) {
      continue;
    }
    const auto head = files::ReadSharedHead(entry.path(), kNamePrefixBytes);
    if (head && head->size <= kMaxFileBytes) {
      std::string description = DescriptionOf(head->bytes, fileName);
      melodies.push_back({head->modified, std::move(fileName), std::move(description)});
    }
  }
  std::ranges::sort(melodies);
  return melodies;
}

std::shared_ptr<SearchIndex> IndexOf(const fs::path& folder, const std::stop_token& stop = {}) {
  auto index = std::make_shared<SearchIndex>();
  for (const StoredMelody& melody : ReadFolder(folder, stop)) {
    index->Add(melody.description, melody.fileName);
  }
  return index;
}

std::string Listing(const SearchIndex& index, const std::vector<std::uint32_t>& melodies) {
  std::string listing;
  for (const std::uint32_t melody : melodies) {
    listing += index.RecordAt(melody);
  }
  return listing;
}

bool HoldsMelodies(const fs::path& folder) {
  return std::any_of(fs::directory_iterator(folder), fs::directory_iterator(), [](const auto& e) {
    return ParseMelodyName(files::TextFromPath(e.path().filename())).has_value();
  });
}

// Removes the files of interrupted uploads. Nobody else may write to the folder meanwhile.
void RemoveUnfinished(const fs::path& folder) {
  files::RemoveTemporaryFiles(folder);
  const fs::path prefix = kOldTemporaryPrefix;
  std::vector<fs::path> old;
  for (const auto& entry : fs::directory_iterator(folder)) {
    if (entry.path().filename().native().starts_with(prefix.native())) {
      old.push_back(entry.path());
    }
  }
  std::error_code ignored;
  std::ranges::for_each(old, [&](const fs::path& file) { fs::remove(file, ignored); });
}

// A file of that name stays as it is.
void CreateOrThrow(const fs::path& file, std::string_view bytes, files::Durability durability) {
  if (files::Create(file, bytes, durability) == files::CreateResult::kFailed) {
    throw fs::filesystem_error("create", file, std::make_error_code(std::errc::io_error));
  }
}

}  // namespace

Shelf::Shelf(fs::path folder, ShelfAccess access, int uploadsPerMinute)
    : folder_(std::move(folder)), access_(access), uploads_(uploadsPerMinute) {
  if (access_ == ShelfAccess::kReadWrite) {
    RemoveUnfinished(folder_);
  }
  index_ = IndexOf(folder_);
}

Shelf::Index Shelf::Current() const {
  const std::lock_guard lock(mutex_);
  return index_;
}

void Shelf::Publish(Index index) {
  const std::lock_guard lock(mutex_);
  index_.swap(index);  // the caller's copy of the old one ends after the lock
}

bool Shelf::Reload(const std::stop_token& stop) {
  const std::unique_lock reading(folderLock_);
  Index index = IndexOf(folder_, stop);
  if (stop.stop_requested()) {
    return false;
  }
  Publish(std::move(index));
  return true;
}

std::size_t Shelf::size() const {
  return Current()->size();
}

std::string Shelf::Search(std::string_view query, const std::function<bool()>& abandoned) const {
  const Index index = Current();
  return Listing(*index, index->Search(query, kMaxSearchRecords, abandoned));
}

std::string Shelf::Random(std::uint64_t seed) const {
  std::mt19937_64 random(seed);
  const Index index = Current();
  const std::size_t wanted = std::min(kRandomRecords, index->size());
  std::vector<std::uint32_t> chosen;
  while (chosen.size() < wanted) {
    const auto melody = static_cast<std::uint32_t>(random() % index->size());
    if (std::find(chosen.begin(), chosen.end(), melody) == chosen.end()) {
      chosen.push_back(melody);
    }
  }
  return Listing(*index, chosen);
}

std::vector<SharedText> Shelf::FullListing() const {
  return Current()->Records();
}

std::vector<std::string> Shelf::Newest(std::size_t count) const {
  const Index index = Current();
  std::vector<std::string> records;
  for (const std::uint32_t melody : index->Search({}, count)) {
    records.emplace_back(index->RecordAt(melody));
  }
  return records;
}

std::optional<std::string> Shelf::Melody(std::string_view fileName) const {
  if (!ParseMelodyName(fileName)) {
    return std::nullopt;
  }
  return files::ReadShared(folder_ / files::PathFromText(fileName), kMaxFileBytes);
}

UploadAnswer Shelf::Upload(std::string_view fileName, std::string_view contents,
                           std::string_view client, Clock::time_point now) {
  if (access_ == ShelfAccess::kReadOnly) {
    return {UploadResult::kReadOnly, {}};
  }
  if (!uploads_.Allow(client, now)) {
    return {UploadResult::kTooMany, {}};
  }
  if (const std::string_view fault = UploadFault(fileName, contents); !fault.empty()) {
    return {UploadResult::kRefused, fault};
  }
  const std::shared_lock uploading(folderLock_);
  switch (files::Create(folder_ / files::PathFromText(fileName), contents)) {
    case files::CreateResult::kExists:
      return {UploadResult::kExists, {}};
    case files::CreateResult::kFailed:
      return {UploadResult::kDiskFailure, {}};
    case files::CreateResult::kCreated:
      break;
  }
  const std::lock_guard adding(adding_);
  auto next = std::make_shared<SearchIndex>(*Current());
  next->Add(DescriptionOf(contents, fileName), fileName);
  Publish(std::move(next));
  return {};
}

void FillEmptyShelf(const fs::path& folder, const fs::path& source) {
  fs::create_directories(folder);
  std::error_code ignored;
  if (!fs::is_directory(source, ignored) ||
      (HoldsMelodies(folder) && !fs::exists(folder / kFillingMark))) {
    return;
  }
  CreateOrThrow(folder / kFillingMark, {}, files::Durability::kDisk);
  for (const auto& entry : fs::directory_iterator(source)) {
    const fs::path name = entry.path().filename();
    if (!ParseMelodyName(files::TextFromPath(name))) {
      continue;
    }
    if (const auto bytes = files::ReadShared(entry.path(), kMaxFileBytes)) {
      CreateOrThrow(folder / name, *bytes, files::Durability::kRename);
    }
  }
  SyncFiles(folder);
  fs::remove(folder / kFillingMark);
}

}  // namespace tonadex::server
