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
#include "server/melody_folder.h"
#include "server/rate_limit.h"
#include "server/search_index.h"

namespace tonadex::server {

enum class UploadResult { kStored, kExists, kRefused, kTooMany, kReadOnly, kDiskFailure };

struct UploadAnswer {
  UploadResult result = UploadResult::kStored;
  std::string_view fault;  // why it was refused, Windows-1252
};

// The melodies of one folder with an index of their names in memory, what listings and uploads ask
// for. The folder is read at the start.
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

  MelodyFolder folder_;
  const ShelfAccess access_;
  RateLimit uploads_;
  std::shared_mutex folderLock_;  // shared by uploads, exclusive to read the folder again
  std::mutex adding_;             // one upload at a time makes the next index
  mutable std::mutex mutex_;      // guards the pointer
  Index index_;                   // never changed, only replaced: searches hold no lock
};

}  // namespace tonadex::server
