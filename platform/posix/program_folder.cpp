#include "platform/posix/program_folder.h"

#include <array>
#include <cstdlib>
#include <string>
#include <string_view>
#include <system_error>
#include <vector>

#include "core/version.h"
#include "files/paths.h"
#include "files/read.h"
#include "files/write.h"
#include "platform/posix/user_folders.h"

namespace tonadex::platform {
namespace {

namespace fs = std::filesystem;

// The files copied on the first start; those in kRenewed are also replaced by a newer version's.
constexpr std::array<std::string_view, 4> kFiles = {"ver.dat", "print.rtf", "TONADEX.HLP",
                                                    "noactualiza.tdx"};
constexpr std::array<std::string_view, 2> kRenewed = {"ver.dat", "TONADEX.HLP"};
constexpr std::string_view kMelodies = "melodias";

// Names of the data folders in "share": of the desktop package and of the server package.
constexpr std::array<std::string_view, 2> kDataNames = {"tonadex", "tonadex-server"};

// A copy of the ver.dat of the data that was copied last.
constexpr std::string_view kMarker = ".tonadex-datos";

bool Copy(const fs::path& from, const fs::path& to) {
  const auto bytes = files::ReadWhole(from);
  return bytes && files::Replace(to, *bytes, files::Durability::kRename);
}

bool CopyMissing(const fs::path& from, const fs::path& to) {
  std::error_code failure;
  const bool there = fs::exists(fs::symlink_status(to, failure));
  return there || !fs::exists(from, failure) || Copy(from, to);
}

std::vector<fs::path> FilesOf(const fs::path& folder) {
  std::vector<fs::path> files;
  std::error_code failure;
  for (fs::directory_iterator at(folder, failure), end; !failure && at != end;
       at.increment(failure)) {
    if (at->is_regular_file(failure)) {
      files.push_back(at->path());
    }
  }
  return files;
}

bool CopyAllMissing(const fs::path& folder, const fs::path& installed) {
  bool done = true;
  for (const std::string_view name : kFiles) {
    done &= CopyMissing(installed / name, folder / name);
  }
  std::error_code failure;
  fs::create_directories(folder / kMelodies, failure);
  for (const fs::path& melody : FilesOf(installed / kMelodies)) {
    done &= CopyMissing(melody, folder / kMelodies / melody.filename());
  }
  return done && !failure;
}

bool Renew(const fs::path& folder, const fs::path& installed) {
  bool done = true;
  for (const std::string_view name : kRenewed) {
    std::error_code failure;
    done &= !fs::exists(installed / name, failure) || Copy(installed / name, folder / name);
  }
  return done;
}

}  // namespace

fs::path ProgramFolderPath() {
  std::error_code failure;
  if (const char* chosen = std::getenv("TONADEX_HOME"); chosen != nullptr && *chosen != '\0') {
    const fs::path folder = fs::absolute(chosen, failure);
    return failure ? fs::path(chosen) : folder;
  }
  const fs::path data = DataFolder();
  return (data.empty() ? files::PathFromText(PrivateTempFolder()) : data) / "tonadex";
}

fs::path InstallPrefix() {
  std::error_code failure;
  return fs::read_symlink("/proc/self/exe", failure).parent_path().parent_path();
}

fs::path InstalledData() {
  std::error_code failure;
  std::vector<fs::path> places;
  places.reserve(kDataNames.size() + 1);
  for (const std::string_view name : kDataNames) {
    places.push_back(InstallPrefix() / "share" / name);
  }
  places.emplace_back(TONADEX_DATA_DIR);
  for (const fs::path& place : places) {
    if (place.is_absolute() && fs::is_regular_file(place / "ver.dat", failure)) {
      return place;
    }
  }
  return {};
}

bool SeedProgramFolder(const fs::path& folder, const fs::path& installed) {
  std::error_code failure;
  fs::create_directories(folder, failure);
  if (failure || fs::equivalent(folder, installed, failure)) {
    return !failure;
  }
  const auto version = files::ReadWhole(installed / "ver.dat");
  if (!version) {
    return false;
  }
  const fs::path marker = folder / kMarker;
  const auto seeded = files::ReadWhole(marker);
  if (seeded && !core::IsOlderVersion(*seeded, *version)) {
    return true;
  }
  const bool done = seeded ? Renew(folder, installed) : CopyAllMissing(folder, installed);
  return done && files::Replace(marker, *version, files::Durability::kRename);
}

fs::path PrepareProgramFolder() {
  fs::path folder = ProgramFolderPath();
  for (const fs::path& written : {folder, folder / kMelodies, folder / "servidor",
                                  ConfigFolder() / "tonadex", fs::path(PrivateTempFolder())}) {
    if (written.is_absolute()) {  // relative without a home folder
      files::RemoveTemporaryFiles(written);
    }
  }
  SeedProgramFolder(folder, InstalledData());  // the program also runs without the data
  return folder;
}

}  // namespace tonadex::platform
