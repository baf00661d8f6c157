#pragma once

#include <chrono>
#include <filesystem>
#include <mutex>
#include <optional>
#include <stop_token>
#include <string>
#include <string_view>
#include <vector>

#include "files/write.h"
#include "server/stored_index.h"

namespace tonadex::server {

// Resolution of the coarsest file times, those of FAT.
inline constexpr std::chrono::nanoseconds kFileTimeStep = std::chrono::seconds(2);

enum class ShelfAccess { kReadWrite, kReadOnly };

// The folder with the melodies, files "stem.number"; only these files count. A hidden file in it,
// the stored index, keeps the description and file status of each melody, so that the next start
// opens only files that have changed. Without a valid index all files are opened. Names and
// contents are Windows-1252. Safe to use from several threads.
class MelodyFolder {
 public:
  // The folder must exist. For kReadWrite the caller holds its lock. `timeStep` is the resolution
  // of file times: two changes within it may leave the same time.
  MelodyFolder(std::filesystem::path folder, ShelfAccess access,
               std::chrono::nanoseconds timeStep = kFileTimeStep);
  // Adds the melodies created since the last Read to the stored index.
  ~MelodyFolder();
  MelodyFolder(const MelodyFolder&) = delete;
  MelodyFolder& operator=(const MelodyFolder&) = delete;

  bool Exists() const noexcept;
  // All melodies, oldest first; incomplete if `stop` is requested. Removes temporary files that
  // killed programs left. Must not run at the same time as Create. Throws
  // std::filesystem::filesystem_error when the folder cannot be read.
  StoredMelodies Read(const std::stop_token& stop = {});
  // A melody's bytes; empty when there is no such melody or the name is invalid.
  std::optional<std::string> Melody(std::string_view fileName) const;
  // Stores a melody. On return it is synced to the disk.
  files::CreateResult Create(const std::string& fileName, std::string_view contents);

 private:
  void StoreCreated();

  const std::filesystem::path folder_;
  const ShelfAccess access_;
  const std::chrono::nanoseconds timeStep_;
  std::mutex mutex_;                  // guards the members below
  std::vector<std::string> created_;  // file names since the last Read
};

// The description in listings of a melody file; `contents` may be only its beginning.
std::string DescriptionOf(std::string_view contents, std::string_view fileName);

// Copies the melodies of `source` into `folder` if it has no melodies yet or an earlier copy was
// interrupted; creates `folder` if needed. Does nothing without `source`. The caller holds the
// folder's lock.
void FillEmptyShelf(const std::filesystem::path& folder, const std::filesystem::path& source);

}  // namespace tonadex::server
