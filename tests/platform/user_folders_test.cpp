#include "platform/posix/user_folders.h"

#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include "core/windows1252.h"
#include "tests/core/table.h"
#include "tests/platform/environment.h"
#include "tests/support/temp_folder.h"

namespace tonadex::platform::user_folders_test {

namespace fs = std::filesystem;

TEST(PrivateTempFolder, IsTheFirstThatACommandCanName) {
  const test::TempFolder folder;
  const std::string base = folder.path().string();
  const std::string user = "tonadex-" + std::to_string(::geteuid());
  for (const char* name :
       {"run", "con blanco", "a\u00f1o\u20ac", "\u0142", "comilla\"", "linea\n"}) {
    fs::create_directory(folder / name);
  }
  folder.Write("file", "");
  fs::create_directories(folder / "link-run");
  fs::create_symlink(folder / "run", folder / "link-run/tonadex");
  for (const auto& [name, mode] :
       {std::pair("group-run/tonadex", 0720), {"open-run/tonadex", 0702}}) {
    fs::create_directories(folder / name);
    ::chmod((folder / name).c_str(), static_cast<mode_t>(mode));
  }
  const test::ScopedVariable tmp("TMPDIR", base);
  for (test::Row& row : test::Table("Temp folders")) {
    core::ReplaceAll(row.fields[0], "@", base);
    core::ReplaceAll(row.fields[1], "@", base);
    core::ReplaceAll(row.fields[1], "USER", user);
    for (const std::string_view name : core::SplitText(row[0], ';')) {
      const test::ScopedVariable set("XDG_RUNTIME_DIR", std::string(name));
      const std::string want = core::FromUtf8(row[1]);
      EXPECT_EQ(PrivateTempFolder(), want) << name;
      EXPECT_EQ(PrivateTempFolder(), want) << name << ", again";
    }
  }
  struct stat status = {};
  ASSERT_EQ(::stat((folder / "run/tonadex").c_str(), &status), 0);
  EXPECT_EQ(status.st_mode & 07777, 0700u);
}

}  // namespace tonadex::platform::user_folders_test
