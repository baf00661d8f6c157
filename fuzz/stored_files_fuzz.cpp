#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <string>

#include "app/inicio.h"
#include "app/settings.h"
#include "core/windows1252.h"
#include "fuzz/require.h"
#include "platform/posix/program_folder.h"
#include "platform/posix/settings_file.h"
#include "tests/support/temp_folder.h"
#include "tests/support/test_program.h"

// Any bytes in the program's files: ver.dat and the settings.
namespace {

using namespace tonadex;
namespace fs = std::filesystem;

std::string VersionShown(const std::string& bytes) {
  static test::TestProgram test;
  test.folder.Write("ver.dat", bytes);
  test.program.gVersion = "none";
  app::inicio splash(test.program);
  splash.Form_Load(0);
  Require(test.program.gVersion == (bytes.empty() ? "none" : splash.Label1.caption),
          "another version than the one shown");
  return splash.Label1.caption;
}

void CheckVersion(const std::string& bytes) {
  const std::string version = VersionShown(bytes);
  Require(version.size() <= bytes.size() || bytes.empty(), "a version out of nothing");
  if (bytes.size() < 1000 && version.find('"') == version.npos) {
    Require(VersionShown("\"" + core::ToUtf8(version) + "\"\r\n") == version,
            "a version that does not read back");
  }
}

// The installed data of any version is copied once, and again only when its version increases.
void CheckSeeding(const std::string& bytes) {
  const test::TempFolder home;
  home.Write("data/ver.dat", bytes);
  const fs::path folder = home / "folder";
  const auto seeded = [&] {
    Require(platform::SeedProgramFolder(folder, home / "data"), "data that cannot be copied");
    return fs::remove(folder / "ver.dat");
  };
  Require(seeded() && !seeded(), "not once");
  home.Write("data/ver.dat", "1000001." + bytes);  // higher than any version in `bytes`
  Require(!seeded() || !seeded(), "twice");
}

void CheckSettings(const std::string& bytes) {
  static const test::TempFolder folder;
  folder.Write("ajustes.ini", bytes);
  platform::SettingsFile settings(folder / "ajustes.ini");
  const auto model = [&] {
    return app::RegReadString(settings, app::kHkeyClassesRoot, app::kSettingKey, app::kModelSetting,
                              0);
  };
  const std::string before = model();
  Require(!before.empty(), "a model that is nothing");
  const app::RegistryValue value{app::kRegSz, bytes};
  if (!settings.SetValue(app::kHkeyClassesRoot, app::kSettingKey, "otra", value)) {
    Require(bytes.size() > platform::kMaxSettingsBytes / 8 && folder.Read("ajustes.ini") == bytes,
            "a setting that is not stored");
    return;
  }
  const auto stored = settings.QueryValue(app::kHkeyClassesRoot, app::kSettingKey, "otra");
  Require(stored && stored->data == bytes, "a setting that does not read back");
  Require(model() == before, "a setting that changes another");
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string bytes(data, data + size);
  CheckVersion(bytes);
  CheckSeeding(bytes);
  CheckSettings(bytes);
  return 0;
}
