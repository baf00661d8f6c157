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

// The coarsest times that a file system keeps (FAT).
inline constexpr std::chrono::nanoseconds kFileTimeStep = std::chrono::seconds(2);

enum class ShelfAccess { kReadWrite, kReadOnly };

// Where the melodies are: the files "stem.number" of one folder. The folder is the truth. A hidden
// file in it, the stored index, keeps what was read of each melody, so that the next start opens
// only files that have changed since; without it, or when it does not fit, all of them are opened.
// Safe to use from several threads.
class MelodyFolder {
 public:
  // The folder must exist. For kReadWrite the caller holds its lock. Two changes of a file within
  // `timeStep` may leave it with the same times.
  MelodyFolder(std::filesystem::path folder, ShelfAccess access,
               std::chrono::nanoseconds timeStep = kFileTimeStep);
  // Adds to the stored index what was created since the last Read.
  ~MelodyFolder();
  MelodyFolder(const MelodyFolder&) = delete;
  MelodyFolder& operator=(const MelodyFolder&) = delete;

  bool Exists() const noexcept;
  // All melodies, oldest first; incomplete when it is told to stop. Removes unfinished uploads of
  // killed programs. Not at the same time as Create. Throws std::filesystem::filesystem_error when
  // it cannot read the folder.
  StoredMelodies Read(const std::stop_token& stop = {});
  // A melody's bytes; none when there is no such melody or the name is invalid.
  std::optional<std::string> Melody(std::string_view fileName) const;
  // Stores a melody; it is on the disk when this returns.
  files::CreateResult Create(const std::string& fileName, std::string_view contents);

 private:
  void StoreCreated();

  const std::filesystem::path folder_;
  const ShelfAccess access_;
  const std::chrono::nanoseconds timeStep_;
  std::mutex mutex_;                  // guards what follows
  std::vector<std::string> created_;  // since the last Read
};

// What a listing says about a melody with these contents (the beginning is enough).
std::string DescriptionOf(std::string_view contents, std::string_view fileName);

// Copies the melodies of `source` into `folder`, which is made when it is missing, if `folder`
// holds no melody yet or an earlier copy was interrupted. A missing source copies nothing. The
// caller holds the folder's lock.
void FillEmptyShelf(const std::filesystem::path& folder, const std::filesystem::path& source);

}  // namespace tonadex::server
