#include "platform/posix/user_folders.h"

#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include "tests/platform/environment.h"
#include "tests/support/temp_folder.h"

namespace tonadex::platform {
namespace {

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
  fs::create_directories(folder / "open-run/tonadex");
  ::chmod((folder / "open-run/tonadex").c_str(), 0777);
  const std::string usual = base + "/" + user + "/";
  const std::pair<std::string, std::string> cases[] = {
      {base + "/run", base + "/run/tonadex/"},
      {base + "/a\u00f1o\u20ac", base + "/a\xF1o\x80/tonadex/"},
      {base + "/con blanco", usual},
      {base + "/\u0142", usual},  // not in Windows-1252
      {base + "/comilla\"", usual},
      {base + "/linea\n", usual},
      {base + "/none", usual},
      {base + "/file", usual},
      {"run", usual},
      {base + "/link-run", usual},
      {base + "/open-run", usual},
  };
  const test::ScopedVariable tmp("TMPDIR", base);
  for (const auto& [runtime, want] : cases) {
    const test::ScopedVariable set("XDG_RUNTIME_DIR", runtime);
    EXPECT_EQ(PrivateTempFolder(), want) << runtime;
    EXPECT_EQ(PrivateTempFolder(), want) << runtime << ", again";
  }
  struct stat status = {};
  ASSERT_EQ(::stat((folder / "run/tonadex").c_str(), &status), 0);
  EXPECT_EQ(status.st_mode & 07777, 0700u);
}

}  // namespace
}  // namespace tonadex::platform
