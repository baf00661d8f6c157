#include "platform/posix/user_folders.h"

#include <pwd.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cstdlib>
#include <optional>
#include <vector>

#include "core/windows1252.h"

namespace tonadex::platform {
namespace {

namespace fs = std::filesystem;

constexpr mode_t kOwnerOnly = 0700;

// The folder in an environment variable; empty when it is not set or not an absolute path.
fs::path FolderOf(const char* variable) {
  const char* value = std::getenv(variable);
  const fs::path folder = value == nullptr ? "" : value;
  return folder.is_absolute() ? folder : fs::path();
}

fs::path FolderOr(const char* variable, const char* belowHome) {
  const fs::path folder = FolderOf(variable);
  const fs::path home = HomeFolder();
  return !folder.empty() ? folder : home.empty() ? home : home / belowHome;
}

// The path as Windows-1252 text; nullopt when the conversion would lose characters or the path
// contains a blank or quote, which a sequencer command cannot hold.
std::optional<std::string> CommandText(const fs::path& path) {
  const std::string& utf8 = path.native();
  std::string text = core::FromUtf8(utf8);
  if (core::ToUtf8(text) != utf8) {
    return std::nullopt;
  }
  for (const char c : text) {
    if (static_cast<unsigned char>(c) <= ' ' || c == '"') {
      return std::nullopt;
    }
  }
  return text;
}

// Creates the folder for this user only. False when another user owns it or can write to it.
bool MakePrivate(const fs::path& folder) {
  if (::mkdir(folder.c_str(), kOwnerOnly) == 0) {
    return true;
  }
  struct stat status = {};
  return ::lstat(folder.c_str(), &status) == 0 && S_ISDIR(status.st_mode) &&
         status.st_uid == ::geteuid() && (status.st_mode & 0022) == 0 &&
         ::access(folder.c_str(), W_OK | X_OK) == 0;
}

}  // namespace

fs::path HomeFolder() {
  fs::path home = FolderOf("HOME");
  if (home.empty()) {
    const passwd* account = ::getpwuid(::geteuid());
    home = account == nullptr || account->pw_dir == nullptr ? "" : account->pw_dir;
  }
  return home.is_absolute() ? home : fs::path();
}

fs::path ConfigFolder() {
  return FolderOr("XDG_CONFIG_HOME", ".config");
}

fs::path DataFolder() {
  return FolderOr("XDG_DATA_HOME", ".local/share");
}

std::string PrivateTempFolder() {
  const std::string shared = "tonadex-" + std::to_string(::geteuid());
  const std::vector<std::pair<fs::path, std::string>> places = {
      {FolderOf("XDG_RUNTIME_DIR"), "tonadex"},
      {FolderOf("TMPDIR"), shared},
      {"/tmp", shared},
      {"/var/tmp", shared},
      {FolderOr("XDG_CACHE_HOME", ".cache"), "tonadex"}};
  for (const auto& [parent, name] : places) {
    const auto text = parent.empty() ? std::nullopt : CommandText(parent / name);
    if (text && MakePrivate(parent / name)) {
      return *text + "/";
    }
  }
  return "/tmp/" + shared + "/";
}

}  // namespace tonadex::platform
