#pragma once

#include <filesystem>
#include <functional>
#include <optional>
#include <string_view>
#include <system_error>

#include "files/system.h"

// Atomic writing of files: at any moment, even after a full disk or a killed program, the file has
// either its old content or the complete new content.
namespace tonadex::files {

enum class Durability {
  kRename,  // a power failure may lose the new file
  kDisk,    // the new file is on the disk when the call returns
};

// Permissions of a newly created file; a replaced file keeps its permissions.
enum class Access { kUsual, kOwnerOnly };

enum class CreateResult {
  kCreated,
  kExists,  // the file exists already and was left unchanged
  kFailed,
};

// Replaces the file atomically or creates it: on failure the old content remains. A symbolic link
// is followed. False on failure, also for anything but a regular file.
bool Replace(const std::filesystem::path& file, std::string_view bytes,
             Durability durability = Durability::kDisk, Access access = Access::kUsual);

// Creates the file; never replaces one.
CreateResult Create(const std::filesystem::path& file, std::string_view bytes,
                    Durability durability = Durability::kDisk);

// Moves a file to a name on the same disk, also in another folder; never replaces one.
CreateResult MoveToNewName(const std::filesystem::path& from, const std::filesystem::path& to);

// Makes a file under a name that is free: tries the name itself, then "stem 2.extension" and so on
// as long as `make` returns kExists. Returns the file's path; nullopt when `make` returns kFailed.
using Make = std::function<CreateResult(const std::filesystem::path& file)>;
std::optional<std::filesystem::path> MakeUnderFreeName(const std::filesystem::path& file,
                                                       const Make& make);

// Moves or copies a file into a folder, under a free name; creates the folder if it is missing.
// Returns the new path; nullopt on failure, and then the file has not been moved.
std::optional<std::filesystem::path> MoveInto(const std::filesystem::path& folder,
                                              const std::filesystem::path& file);
std::optional<std::filesystem::path> CopyInto(const std::filesystem::path& folder,
                                              const std::filesystem::path& file);

// As Replace, for a file that the user named: writes in place to devices, to pipes and to a
// writable file in a folder that is not writable. Errors: device failure.
void WriteBytes(const std::filesystem::path& file, std::string_view bytes);
[[noreturn]] void FailToWrite(const std::filesystem::path& file);  // the error of it

// Whether it is the name of a temporary file.
bool IsTemporaryName(std::string_view name);

// Removes a temporary file that a killed program left, but none that a running program is still
// writing.
void RemoveTemporaryFile(const std::filesystem::path& file);
void RemoveTemporaryFiles(const std::filesystem::path& folder);  // all of a folder

// The temporary file that the functions above use; use it directly when a library writes the
// content to a path. It has an unguessable hidden name in the target's folder and is removed at the
// end of the scope.
class TemporaryFile {
 public:
  // Failure() is set if it could not be created.
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
