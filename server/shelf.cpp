#include "server/shelf.h"

#include <algorithm>
#include <mutex>
#include <random>
#include <tuple>
#include <utility>
#include <vector>

#include "files/paths.h"
#include "files/write.h"

#include "server/file_system.h"
#include "server/melody_name.h"

namespace tonadex::server {
namespace {

namespace fs = std::filesystem;

constexpr std::string_view kFillingMark = ".llenando";

struct StoredMelody {
  std::int64_t modified = 0;
  std::string fileName;
  std::string description;
};

std::string_view FirstLine(std::string_view bytes) {
  return bytes.substr(0, bytes.find_first_of("\r\n"));
}

std::string DescriptionOf(std::string_view contents, std::string_view fileName) {
  return Description(FirstLine(contents), fileName.substr(0, fileName.find('.')));
}

std::vector<StoredMelody> ReadFolder(const fs::path& folder) {
  std::vector<StoredMelody> melodies;
  FileHead head;
  for (const auto& entry : fs::directory_iterator(folder)) {
    std::string fileName = files::TextFromPath(entry.path().filename());
    if (ParseMelodyName(fileName) && ReadHead(entry.path(), kNamePrefixBytes, head)) {
      std::string description = DescriptionOf(head.bytes, fileName);
      melodies.push_back({head.modified, std::move(fileName), std::move(description)});
    }
  }
  std::sort(melodies.begin(), melodies.end(), [](const auto& a, const auto& b) {
    return std::tie(a.modified, a.fileName) < std::tie(b.modified, b.fileName);
  });
  return melodies;
}

SearchIndex IndexOf(const fs::path& folder) {
  SearchIndex index;
  const std::vector<StoredMelody> melodies = ReadFolder(folder);
  index.Reserve(melodies.size());
  for (const StoredMelody& melody : melodies) {
    index.Add(melody.description, melody.fileName);
  }
  return index;
}

bool HoldsMelodies(const fs::path& folder) {
  return std::any_of(fs::directory_iterator(folder), fs::directory_iterator(), [](const auto& e) {
    return ParseMelodyName(files::TextFromPath(e.path().filename())).has_value();
  });
}

}  // namespace

Shelf::Shelf(fs::path folder, ShelfAccess access, int uploadsPerMinute)
    : folder_(std::move(folder)), access_(access), uploads_(uploadsPerMinute) {
  if (access_ == ShelfAccess::kReadWrite) {
    RemoveUnfinished(folder_);
  }
  index_ = IndexOf(folder_);
}

void Shelf::Reload() {
  const std::unique_lock files(files_);
  SearchIndex index = IndexOf(folder_);
  const std::unique_lock lock(mutex_);
  index_ = std::move(index);
  fullListing_.reset();
}

std::size_t Shelf::size() const {
  const std::shared_lock lock(mutex_);
  return index_.size();
}

std::string Shelf::Listing(const std::vector<std::uint32_t>& melodies) const {
  std::string listing;
  for (const std::uint32_t melody : melodies) {
    listing += index_.RecordAt(melody);
  }
  return listing;
}

std::string Shelf::Search(std::string_view query) const {
  const std::shared_lock lock(mutex_);
  return Listing(index_.Search(query, kMaxSearchRecords));
}

std::string Shelf::Random(std::uint64_t seed) const {
  std::mt19937_64 random(seed);
  const std::shared_lock lock(mutex_);
  const std::size_t wanted = std::min(kRandomRecords, index_.size());
  std::vector<std::uint32_t> chosen;
  while (chosen.size() < wanted) {
    const auto melody = static_cast<std::uint32_t>(random() % index_.size());
    if (std::find(chosen.begin(), chosen.end(), melody) == chosen.end()) {
      chosen.push_back(melody);
    }
  }
  return Listing(chosen);
}

SharedText Shelf::FullListing() const {
  {
    const std::shared_lock lock(mutex_);
    if (fullListing_) {
      return fullListing_;
    }
  }
  const std::unique_lock lock(mutex_);
  if (!fullListing_) {
    fullListing_ = std::make_shared<const std::string>(index_.Records());
  }
  return fullListing_;
}

std::vector<std::string> Shelf::Newest(std::size_t count) const {
  const std::shared_lock lock(mutex_);
  std::vector<std::string> records;
  for (const std::uint32_t melody : index_.Search({}, count)) {
    records.emplace_back(index_.RecordAt(melody));
  }
  return records;
}

std::optional<std::string> Shelf::Melody(std::string_view fileName) const {
  FileHead head;
  if (!ParseMelodyName(fileName) ||
      !ReadHead(folder_ / files::PathFromText(fileName), kMaxFileBytes, head)) {
    return std::nullopt;
  }
  return std::move(head.bytes);
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
  const std::shared_lock files(files_);
  switch (CreateDurably(folder_, files::PathFromText(fileName), contents)) {
    case CreateResult::kExists:
      return {UploadResult::kExists, {}};
    case CreateResult::kFailed:
      return {UploadResult::kDiskFailure, {}};
    case CreateResult::kCreated:
      break;
  }
  const std::unique_lock lock(mutex_);
  index_.Add(DescriptionOf(contents, fileName), fileName);
  fullListing_.reset();
  return {};
}

void FillEmptyShelf(const fs::path& folder, const fs::path& source) {
  fs::create_directories(folder);
  std::error_code ignored;
  if (!fs::is_directory(source, ignored) ||
      (HoldsMelodies(folder) && !fs::exists(folder / kFillingMark))) {
    return;
  }
  files::WriteBytes(folder / kFillingMark, {});
  FileHead head;
  for (const auto& entry : fs::directory_iterator(source)) {
    const fs::path name = entry.path().filename();
    if (ParseMelodyName(files::TextFromPath(name)) && ReadHead(entry.path(), kMaxFileBytes, head) &&
        CreateWhole(folder, name, head.bytes) == CreateResult::kFailed) {
      throw fs::filesystem_error("copy", entry.path(), folder,
                                 std::make_error_code(std::errc::io_error));
    }
  }
  SyncFiles(folder);
  fs::remove(folder / kFillingMark);
}

}  // namespace tonadex::server
