#pragma once

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <functional>
#include <memory>
#include <mutex>
#include <optional>
#include <shared_mutex>
#include <stop_token>
#include <string>
#include <string_view>
#include <vector>

#include "server/limits.h"
#include "server/rate_limit.h"
#include "server/search_index.h"

namespace tonadex::server {

enum class ShelfAccess { kReadWrite, kReadOnly };

enum class UploadResult { kStored, kExists, kRefused, kTooMany, kReadOnly, kDiskFailure };

struct UploadAnswer {
  UploadResult result = UploadResult::kStored;
  std::string_view fault;  // why it was refused, Windows-1252
};

// The melodies of one folder, one file each, named "stem.number" and stored as they were sent. The
// folder is the truth: it is read at the start, and an index of names is kept in memory.
// All texts are Windows-1252. Safe to use from several threads.
class Shelf {
 public:
  // Reads the folder, which must exist. For kReadWrite the caller holds the folder's lock.
  Shelf(std::filesystem::path folder, ShelfAccess access, int uploadsPerMinute = kUploadsPerMinute);

  // Reads the folder again, for files that were put there or taken away by hand; uploads wait
  // meanwhile. False, and nothing changed, when it was told to stop. Throws
  // std::filesystem::filesystem_error, and changes nothing, when it cannot read the folder.
  bool Reload(const std::stop_token& stop = {});

  std::size_t size() const;
  // Listings: runs of "description (stem.number)498".
  // At most kMaxSearchRecords, newest first; incomplete when `abandoned` ended the search.
  std::string Search(std::string_view query, const std::function<bool()>& abandoned = {}) const;
  std::string Random(std::uint64_t seed) const;  // kRandomRecords of different melodies
  std::vector<SharedText> FullListing() const;   // in one or more texts
  // Records of the newest melodies, newest first.
  std::vector<std::string> Newest(std::size_t count) const;

  // A melody's bytes; empty when there is no such melody or the name is invalid.
  std::optional<std::string> Melody(std::string_view fileName) const;

  // Checks and stores a melody. After kStored nothing can lose it; nothing is ever overwritten.
  UploadAnswer Upload(std::string_view fileName, std::string_view contents, std::string_view client,
                      Clock::time_point now);

 private:
  using Index = std::shared_ptr<const SearchIndex>;
  Index Current() const;
  void Publish(Index index);

  const std::filesystem::path folder_;
  const ShelfAccess access_;
  RateLimit uploads_;
  std::shared_mutex folderLock_;  // shared by uploads, exclusive to read the folder again
  std::mutex adding_;             // one upload at a time makes the next index
  mutable std::mutex mutex_;      // guards the pointer
  Index index_;                   // never changed, only replaced: searches hold no lock
};

// Copies the melodies of `source` into `folder`, which is made when it is missing, if `folder`
// holds no melody yet or an earlier copy was interrupted. A missing source copies nothing. The
// caller holds the folder's lock.
void FillEmptyShelf(const std::filesystem::path& folder, const std::filesystem::path& source);

}  // namespace tonadex::server
