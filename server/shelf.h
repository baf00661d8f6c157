#pragma once

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <memory>
#include <optional>
#include <shared_mutex>
#include <string>
#include <string_view>

#include "server/limits.h"
#include "server/rate_limit.h"
#include "server/search_index.h"

namespace tonadex::server {

// A text that several replies may share.
using SharedText = std::shared_ptr<const std::string>;

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
  // meanwhile. Throws std::filesystem::filesystem_error, and keeps what it had, when it cannot.
  void Reload();

  std::size_t size() const;
  // Listings: runs of "description (stem.number)498".
  std::string Search(std::string_view query) const;  // at most kMaxSearchRecords, newest first
  std::string Random(std::uint64_t seed) const;      // kRandomRecords of different melodies
  SharedText FullListing() const;
  // Records of the newest melodies, newest first.
  std::vector<std::string> Newest(std::size_t count) const;

  // A melody's bytes; none when there is no such melody or the name is none.
  std::optional<std::string> Melody(std::string_view fileName) const;

  // Checks and stores a melody. After kStored nothing can lose it; nothing is ever overwritten.
  UploadAnswer Upload(std::string_view fileName, std::string_view contents, std::string_view client,
                      Clock::time_point now);

 private:
  std::string Listing(const std::vector<std::uint32_t>& melodies) const;

  const std::filesystem::path folder_;
  const ShelfAccess access_;
  RateLimit uploads_;
  std::shared_mutex files_;          // shared by uploads, held alone to read the folder again
  mutable std::shared_mutex mutex_;  // guards what follows
  SearchIndex index_;
  mutable SharedText fullListing_;  // null until asked for after a change
};

// Copies the melodies of `source` into `folder`, which is made when it is missing, if `folder`
// holds no melody yet or an earlier copy was interrupted. A missing source copies nothing. The
// caller holds the folder's lock.
void FillEmptyShelf(const std::filesystem::path& folder, const std::filesystem::path& source);

}  // namespace tonadex::server
