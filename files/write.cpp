#include "files/write.h"

#include <fstream>
#include <random>
#include <string>

#include "core/runtime_error.h"
#include "core/windows1252.h"
#include "files/paths.h"
#include "files/read.h"

namespace tonadex::files {
namespace {

namespace fs = std::filesystem;
using namespace core::literals;

// Temporary name: the leading dot hides it from the repertoire, and it is short enough to be valid
// wherever a target of maximum length is.
constexpr std::string_view kPrefix = ".tdx-";
constexpr std::size_t kDigits = 32;
constexpr std::string_view kHexDigits = "0123456789abcdef";

std::string TemporaryName() {
  std::random_device random;  // cryptographically secure
  std::string name(kPrefix);
  for (std::size_t i = 0; i < kDigits; i += 8) {
    for (unsigned bits = random(), digit = 0; digit < 8; ++digit, bits >>= 4) {
      name += kHexDigits[bits & 0xF];
    }
  }
  return name;
}

// The target of a symbolic link, even when it does not exist yet.
fs::path BehindLinks(fs::path file) {
  constexpr int kMaxLinks = 40;
  std::error_code failure;
  fs::path existing = fs::canonical(file, failure);
  if (!failure) {
    return existing;
  }
  for (int links = 0; links < kMaxLinks && fs::is_symlink(file, failure); ++links) {
    file = file.parent_path() / fs::read_symlink(file, failure);
  }
  return file;
}

bool WriteInPlace(const fs::path& file, std::string_view bytes) {
  std::ofstream output(file, std::ios::binary | std::ios::trunc);
  output.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
  output.close();
  return static_cast<bool>(output);
}

bool WriteNamed(const fs::path& file, std::string_view bytes) {
  std::error_code ignored;
  const fs::file_type type = fs::status(file, ignored).type();
  if (type == fs::file_type::not_found) {
    return Replace(file, bytes);
  }
  if (type != fs::file_type::regular) {
    return WriteInPlace(file, bytes);
  }
  TemporaryFile temporary(file);
  if (temporary.Failure() == std::errc::permission_denied) {
    return WriteInPlace(file, bytes);
  }
  return temporary.Write(bytes) && temporary.Replace(Durability::kDisk);
}

}  // namespace

TemporaryFile::TemporaryFile(const fs::path& target, Access access)
    : target_(BehindLinks(target)), path_(target_.parent_path() / TemporaryName()) {
  const fs::file_status before = fs::status(target_, failure_);
  const bool exists = before.type() == fs::file_type::regular;
  if (!exists && before.type() != fs::file_type::not_found) {
    failure_ = std::make_error_code(std::errc::is_a_directory);
    return;
  }
  file_ = system::CreateLocked(path_, access == Access::kOwnerOnly, failure_);
  if (file_ && exists) {
    std::error_code ignored;  // some file systems have no permissions
    fs::permissions(path_, before.permissions(), ignored);
  }
}

TemporaryFile::~TemporaryFile() {
  if (!failure_) {
    file_.Close();
    fs::remove(path_, failure_);
  }
}

bool TemporaryFile::Finish(Durability durability) {
  const bool synced = file_ && (durability == Durability::kRename || file_.Sync());
  return file_.Close() && synced;
}

bool TemporaryFile::Replace(Durability durability) {
  return Finish(durability) &&
         system::MoveReplacing(path_, target_, durability == Durability::kDisk);
}

CreateResult TemporaryFile::Create(Durability durability) {
  std::error_code failure;
  if (Finish(durability) &&
      system::MoveToNewName(path_, target_, durability == Durability::kDisk, failure)) {
    return CreateResult::kCreated;
  }
  return failure == std::errc::file_exists ? CreateResult::kExists : CreateResult::kFailed;
}

bool Replace(const fs::path& file, std::string_view bytes, Durability durability, Access access) {
  TemporaryFile temporary(file, access);
  return temporary.Write(bytes) && temporary.Replace(durability);
}

CreateResult Create(const fs::path& file, std::string_view bytes, Durability durability) {
  std::error_code ignored;
  if (fs::exists(fs::symlink_status(file, ignored))) {
    return CreateResult::kExists;
  }
  TemporaryFile temporary(file);
  return temporary.Write(bytes) ? temporary.Create(durability) : CreateResult::kFailed;
}

CreateResult MoveToNewName(const fs::path& from, const fs::path& to) {
  std::error_code failure;
  if (!system::MoveToNewName(from, to, true, failure)) {
    return failure == std::errc::file_exists ? CreateResult::kExists : CreateResult::kFailed;
  }
  if (fs::exists(fs::symlink_status(from, failure)) && !fs::remove(from, failure)) {
    fs::remove(to, failure);
    return CreateResult::kFailed;
  }
  return CreateResult::kCreated;
}

std::optional<fs::path> MakeUnderFreeName(const fs::path& file, const Make& make) {
  constexpr int kMostTries = 10'000;
  for (int i = 1; i <= kMostTries; ++i) {
    fs::path name = file;
    if (i > 1) {
      fs::path stem = file.stem();
      name.replace_filename((stem += " " + std::to_string(i)) += file.extension());
    }
    if (const CreateResult result = make(name); result != CreateResult::kExists) {
      return result == CreateResult::kCreated ? std::optional(name) : std::nullopt;
    }
  }
  return std::nullopt;
}

std::optional<fs::path> MoveInto(const fs::path& folder, const fs::path& file) {
  std::error_code ignored;  // a missing folder shows in the next step
  fs::create_directories(folder, ignored);
  return MakeUnderFreeName(folder / file.filename(),
                           [&](const fs::path& to) { return MoveToNewName(file, to); });
}

std::optional<fs::path> CopyInto(const fs::path& folder, const fs::path& file) {
  const std::optional<std::string> bytes = ReadWhole(file);
  if (!bytes) {
    return std::nullopt;
  }
  std::error_code ignored;
  fs::create_directories(folder, ignored);
  return MakeUnderFreeName(folder / file.filename(),
                           [&](const fs::path& to) { return Create(to, *bytes); });
}

void WriteBytes(const fs::path& file, std::string_view bytes) {
  if (!WriteNamed(file, bytes)) {
    FailToWrite(file);
  }
}

void FailToWrite(const fs::path& file) {
  throw core::RunTimeError(core::ErrorNumber::kDeviceFailure,
                           std::string(u8"no se puede escribir el fichero «"_w) +
                               TextFromPath(file) + std::string(u8"»"_w));
}

bool IsTemporaryName(std::string_view name) {
  return name.size() == kPrefix.size() + kDigits && name.starts_with(kPrefix) &&
         name.find_first_not_of(kHexDigits, kPrefix.size()) == std::string::npos;
}

void RemoveTemporaryFile(const fs::path& file) {
  system::RemoveUnlocked(file);
}

void RemoveTemporaryFiles(const fs::path& folder) {
  try {
    for (const ListedFile& file : ListFiles(folder, IsTemporaryName)) {
      RemoveTemporaryFile(folder / PathFromText(file.name));
    }
  } catch (const fs::filesystem_error&) {
    // A missing folder holds no temporary files.
  }
}

}  // namespace tonadex::files
