#include "platform/posix/program_folder.h"

#include <gtest/gtest.h>

#include <map>
#include <string>
#include <utility>

#include "tests/platform/environment.h"
#include "tests/support/full_disk.h"
#include "tests/support/temp_folder.h"

namespace tonadex::platform::program_folder_test {

namespace fs = std::filesystem;

// All files below the folder, sorted, as "name=bytes;".
std::string Contents(const test::TempFolder& folder, const fs::path& below) {
  std::map<std::string, std::string> files;
  for (const auto& entry : fs::recursive_directory_iterator(folder / below)) {
    if (entry.is_regular_file()) {
      const fs::path name = fs::relative(entry.path(), folder.path());
      files[fs::relative(name, below).string()] = folder.Read(name);
    }
  }
  std::string all;
  for (const auto& [name, bytes] : files) {
    all.append(name).append("=").append(bytes).append(";");
  }
  return all;
}

struct SeedProgramFolderTest : testing::Test {
  SeedProgramFolderTest() {
    Install("1.9.0");
    folder.Write("data/print.rtf", "P");
    folder.Write("data/noactualiza.tdx", "");
    folder.Write("data/melodias/vals.120", "V");
    folder.Write("data/melodias/jota.90", "J");
    folder.Write("data/servidor/otra.80", "O");
  }
  void Install(const std::string& version) const {
    folder.Write("data/ver.dat", version);
    folder.Write("data/TONADEX.HLP", "help " + version);
  }
  bool Seed() const { return SeedProgramFolder(folder / "home", folder / "data"); }
  std::string Home() const { return Contents(folder, "home"); }

  test::TempFolder folder;
};

TEST_F(SeedProgramFolderTest, AddsWhatIsMissingOnceTheDiskHasRoom) {
  {
    const test::FullDisk full(1);
    EXPECT_FALSE(Seed());
  }
  EXPECT_EQ(Home(), "melodias/jota.90=J;melodias/vals.120=V;noactualiza.tdx=;print.rtf=P;");
  folder.Write("home/melodias/vals.120", "mine");
  EXPECT_TRUE(Seed());
  EXPECT_EQ(Home(),
            ".tonadex-datos=1.9.0;TONADEX.HLP=help 1.9.0;melodias/jota.90=J;"
            "melodias/vals.120=mine;noactualiza.tdx=;print.rtf=P;ver.dat=1.9.0;");
}

TEST_F(SeedProgramFolderTest, LaterStartsRespectTheUserAndRenewWithANewerVersion) {
  ASSERT_TRUE(Seed());
  fs::remove(folder / "home/melodias/vals.120");
  fs::remove(folder / "home/print.rtf");
  fs::rename(folder / "home/noactualiza.tdx", folder / "home/actualiza.tdx");
  folder.Write("home/ver.dat", "edited");
  const std::string kept = "actualiza.tdx=;melodias/jota.90=J;";
  for (const auto& [version, want] : std::initializer_list<std::pair<const char*, std::string>>{
           {"1.9.0", ".tonadex-datos=1.9.0;TONADEX.HLP=help 1.9.0;" + kept + "ver.dat=edited;"},
           {"1.8.99", ".tonadex-datos=1.9.0;TONADEX.HLP=help 1.9.0;" + kept + "ver.dat=edited;"},
           {"1.10", ".tonadex-datos=1.10;TONADEX.HLP=help 1.10;" + kept + "ver.dat=1.10;"}}) {
    Install(version);
    EXPECT_TRUE(Seed()) << version;
    EXPECT_EQ(Home(), want) << version;
  }
}

TEST_F(SeedProgramFolderTest, DoesNothingWithoutDataOrInItsOwnPlace) {
  const std::string before = Contents(folder, "data");
  EXPECT_FALSE(SeedProgramFolder(folder / "home", folder / "missing"));
  EXPECT_FALSE(SeedProgramFolder(folder / "home", {}));
  EXPECT_FALSE(SeedProgramFolder(folder / "data/ver.dat", folder / "data"));
  EXPECT_FALSE(SeedProgramFolder("/proc/tonadex", folder / "data"));
  EXPECT_TRUE(SeedProgramFolder(folder / "data", folder / "data"));
  EXPECT_EQ(Contents(folder, "data"), before);
}

TEST(PrepareProgramFolder, RemovesWhatAKilledProgramLeft) {
  const test::TempFolder folder;
  const test::ScopedVariable own("TONADEX_HOME", folder.path().string());
  const std::string left = ".tdx-" + std::string(32, 'f');
  for (const char* place : {"", "melodias", "servidor"}) {
    folder.Write(place / fs::path(left), "half");
  }
  EXPECT_EQ(PrepareProgramFolder(), folder.path());
  for (const char* place : {"", "melodias", "servidor"}) {
    EXPECT_FALSE(fs::exists(folder / place / left)) << place;
  }
}

TEST(ProgramFolderPath, FollowsTheEnvironment) {
  using Variable = std::optional<std::string>;
  const std::tuple<Variable, Variable, fs::path> cases[] = {
      {"/o w", "/d", "/o w"},
      {"o", "/d", fs::current_path() / "o"},
      {"", "/d", "/d/tonadex"},
      {std::nullopt, "d", "/casa/.local/share/tonadex"},
      {std::nullopt, std::nullopt, "/casa/.local/share/tonadex"}};
  const test::ScopedVariable home("HOME", "/casa");
  for (const auto& [ownFolder, dataFolder, want] : cases) {
    const test::ScopedVariable own("TONADEX_HOME", ownFolder);
    const test::ScopedVariable data("XDG_DATA_HOME", dataFolder);
    EXPECT_EQ(ProgramFolderPath(), want);
  }
}

}  // namespace tonadex::platform::program_folder_test
