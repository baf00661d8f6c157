#include "server/shelf.h"

#include <mutex>
#include <utility>
#include <vector>

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
    : Store(access == ShelfAccess::kReadWrite, uploadsPerMinute),
      folder_(std::move(folder), access) {
  index_ = IndexOf(folder_.Read());
}

Shelf::Index Shelf::Current() const {
  const std::lock_guard lock(mutex_);
  return index_;
}

void Shelf::Publish(Index index) {
  const std::lock_guard lock(mutex_);
  index_.swap(index);  // the old index is destroyed by the caller, after the lock is released
}

bool Shelf::Reachable() const noexcept {
  return folder_.Exists();
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

std::string Shelf::Search(std::string_view query, const std::function<bool()>& abandoned,
                          std::size_t limit) const {
  const Index index = Current();
  return Listing(*index, index->Search(query, limit, abandoned));
}

std::string Shelf::Random(std::uint64_t seed) const {
  const Index index = Current();
  return Listing(*index, DifferentNumbers(seed, kRandomRecords, index->size()));
}

std::vector<SharedText> Shelf::FullListing() const {
  return Current()->Records();
}

std::optional<std::string> Shelf::Melody(std::string_view fileName) const {
  return folder_.Melody(fileName);
}

UploadResult Shelf::Add(std::string_view fileName, std::string_view contents) {
  const std::shared_lock uploading(folderLock_);
  switch (folder_.Create(std::string(fileName), contents)) {
    case files::CreateResult::kExists:
      return UploadResult::kExists;
    case files::CreateResult::kFailed:
      return UploadResult::kDiskFailure;
    case files::CreateResult::kCreated:
      break;
  }
  const std::lock_guard adding(adding_);
  auto next = std::make_shared<SearchIndex>(*Current());
  next->Add(DescriptionOf(contents, fileName), fileName);
  Publish(std::move(next));
  return UploadResult::kStored;
}

}  // namespace tonadex::server
