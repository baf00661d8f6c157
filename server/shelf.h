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
#include "server/search_index.h"
#include "server/store.h"

namespace tonadex::server {

// The melodies of one folder, with an index of their names in memory. Never throws StoreAway.
class Shelf final : public Store {
 public:
  // Reads the folder, which must exist. For kReadWrite the caller holds the folder's lock. Throws
  // std::filesystem::filesystem_error when the folder cannot be read.
  Shelf(std::filesystem::path folder, ShelfAccess access, int uploadsPerMinute = kUploadsPerMinute);

  bool Reachable() const noexcept override;
  // Reads the folder again, to find files that were added or removed by hand; uploads wait
  // meanwhile. Throws std::filesystem::filesystem_error, and changes nothing, when the folder
  // cannot be read.
  bool Reload(const std::stop_token& stop = {}) override;
  std::size_t size() const override;
  std::string Search(std::string_view query, const std::function<bool()>& abandoned = {},
                     std::size_t limit = kMaxSearchRecords) const override;
  std::string Random(std::uint64_t seed) const override;
  std::vector<SharedText> FullListing() const override;
  std::optional<std::string> Melody(std::string_view fileName) const override;

 private:
  using Index = std::shared_ptr<const SearchIndex>;
  Index Current() const;
  void Publish(Index index);
  UploadResult Add(std::string_view fileName, std::string_view contents) override;

  MelodyFolder folder_;
  std::shared_mutex folderLock_;  // shared by uploads, exclusive for reading the folder
  std::mutex adding_;             // serialises the creation of the next index
  mutable std::mutex mutex_;      // guards the pointer index_
  Index index_;                   // immutable, only replaced, so that searches hold no lock
};

}  // namespace tonadex::server
