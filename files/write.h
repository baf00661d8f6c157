#pragma once

#include <filesystem>
#include <string_view>
#include <system_error>

#include "files/system.h"

// Writing files whole: a reader, a full disk or a killed program meets the old content or the new
// one, never a part.
namespace tonadex::files {

enum class Durability {
  kRename,  // a loss of power may lose the new file
  kDisk,    // the new file is on the disk when the call returns
};

// The permissions of a file that did not exist before; one that is replaced keeps its own.
enum class Access { kUsual, kOwnerOnly };

enum class CreateResult {
  kCreated,
  kExists,  // there is a file of that name already; it stays as it is
  kFailed,
};

// Replaces the file or creates it. A symbolic link is followed. False when that failed, or when
// there is something else than a regular file.
bool Replace(const std::filesystem::path& file, std::string_view bytes,
             Durability durability = Durability::kDisk, Access access = Access::kUsual);

// Creates the file; never replaces one.
CreateResult Create(const std::filesystem::path& file, std::string_view bytes,
                    Durability durability = Durability::kDisk);

// As Replace, for a file that the user named: devices and pipes are written to as they are, and so
// is a writable file in a folder that is not. Errors: device failure.
void WriteBytes(const std::filesystem::path& file, std::string_view bytes);

// Removes from the folder what killed programs left behind there. Files that a running program is
// still writing stay.
void RemoveTemporaryFiles(const std::filesystem::path& folder);

// The hidden file through which all of this goes, for content that somebody else writes to its
// path. It has an unguessable name beside the target and is removed at the end of the scope.
class TemporaryFile {
 public:
  // `Failure` tells whether it could be created.
  explicit TemporaryFile(const std::filesystem::path& target, Access access = Access::kUsual);
  ~TemporaryFile();
  TemporaryFile(const TemporaryFile&) = delete;
  TemporaryFile& operator=(const TemporaryFile&) = delete;

  const std::error_code& Failure() const { return failure_; }
  const std::filesystem::path& Path() const { return path_; }
  bool Write(std::string_view bytes) const { return file_ && file_.Write(bytes); }
  bool Replace(Durability durability);
  CreateResult Create(Durability durability);

 private:
  bool Finish(Durability durability);

  std::filesystem::path target_;
  std::filesystem::path path_;
  std::error_code failure_;
  system::File file_;
};

}  // namespace tonadex::files
