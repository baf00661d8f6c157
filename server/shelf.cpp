#include "server/shelf.h"

#include <algorithm>
#include <mutex>
#include <random>
#include <utility>
#include <vector>

#include "server/melody_name.h"

namespace tonadex::server {
namespace {

std::shared_ptr<SearchIndex> IndexOf(const StoredMelodies& melodies) {
  auto index = std::make_shared<SearchIndex>();
  for (const StoredMelody& melody : melodies.list) {
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

}  // namespace

Shelf::Shelf(std::filesystem::path folder, ShelfAccess access, int uploadsPerMinute)
    : folder_(std::move(folder), access), access_(access), uploads_(uploadsPerMinute) {
  index_ = IndexOf(folder_.Read());
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
  const StoredMelodies melodies = folder_.Read(stop);
  if (stop.stop_requested()) {
    return false;
  }
  Publish(IndexOf(melodies));
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
  return folder_.Melody(fileName);
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
  switch (folder_.Create(std::string(fileName), contents)) {
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

}  // namespace tonadex::server
