#include "files/write.h"

#include <gtest/gtest.h>

#include <atomic>
#include <future>

#include "core/windows1252.h"
#include "files/paths.h"
#include "tests/core/test_melody.h"
#include "tests/support/temp_folder.h"
#ifndef _WIN32
#include <sys/wait.h>
#include <unistd.h>

#include "tests/support/full_disk.h"
#endif

namespace tonadex::files {
namespace {

namespace fs = std::filesystem;
using namespace std::string_view_literals;
using namespace std::string_literals;
using namespace core::literals;
using test::ErrorOf;

std::ptrdiff_t Entries(const fs::path& folder) {
  return std::distance(fs::directory_iterator(folder), {});
}

TEST(PathFromText, ComesBack) {
  EXPECT_EQ(PathFromText(u8"año"_w), fs::path(u8"año"));
  EXPECT_EQ(TextFromPath(PathFromText(u8"año €"_w)), u8"año €"_w);
  EXPECT_EQ(TextFromPath(fs::path(u8"中")), "?");
}

TEST(WriteBytes, WritesOrFails) {
  const test::TempFolder folder;
  const fs::path file = folder / PathFromText(u8"año"_w);
  WriteBytes(file, "long before");
  WriteBytes(file, "\r\n\0\xFF"sv);
  EXPECT_EQ(folder.Read(file), "\r\n\0\xFF"sv);
  EXPECT_EQ(ErrorOf([&] { WriteBytes(folder.path(), "x"); }), 57);
  EXPECT_EQ(ErrorOf([&] { WriteBytes(folder / "no/file", "x"); }), 57);
  EXPECT_FALSE(Replace(folder.path(), "x"));
  EXPECT_EQ(Entries(folder.path()), 1);
}

TEST(MoveInto, KeepsBothOfOneNameOrLeavesTheFileWhereItIs) {
  const test::TempFolder folder;
  const fs::path name = PathFromText(u8"D'año (1).20"_w),
                 second = PathFromText(u8"D'año (1) 2.20"_w);
  for (const std::string_view bytes : {"one", "two"}) {
    folder.Write("m" / name, bytes);
    EXPECT_TRUE(MoveInto(folder / "bin", folder / "m" / name));
  }
  EXPECT_EQ(folder.Read("bin" / name), "one");
  EXPECT_EQ(folder.Read("bin" / second), "two");
  EXPECT_EQ(MoveInto(folder / "m", folder / "bin" / second), folder / "m" / second);
  EXPECT_EQ(Entries(folder / "bin"), 1);
  EXPECT_EQ(CopyInto(folder / "m", folder / "m" / second),
            folder / "m" / PathFromText(u8"D'año (1) 2 2.20"_w));
  folder.Write("file", "x");
  EXPECT_FALSE(MoveInto(folder / "file", folder / "m" / second));
  EXPECT_FALSE(CopyInto(folder / "file", folder / "m" / second));
  EXPECT_FALSE(CopyInto(folder / "bin", folder / "gone"));
  EXPECT_EQ(folder.Read("m" / second), "two");
}

TEST(Create, NeverReplaces) {
  const test::TempFolder folder;
  std::atomic<int> created = 0;
  std::vector<std::future<void>> writers;
  for (char name = 'a'; name < 'i'; ++name) {
    writers.push_back(std::async(std::launch::async, [&, name] {
      for (int round = 0; round < 20; ++round) {
        const auto result = Create(folder / std::to_string(round), std::string(9, name));
        EXPECT_NE(result, CreateResult::kFailed);
        created += result == CreateResult::kCreated;
      }
    }));
  }
  writers.clear();  // joins the threads
  EXPECT_EQ(created, 20);
  EXPECT_EQ(Entries(folder.path()), 20);
  const std::string content = folder.Read("0");
  EXPECT_EQ(content, std::string(9, content.front()));
  // A file that appears while the content is being written.
  TemporaryFile late(folder / "late");
  folder.Write("late", "first");
  EXPECT_EQ(late.Create(Durability::kDisk), CreateResult::kExists);
  EXPECT_EQ(folder.Read("late"), "first");
  EXPECT_EQ(Create(folder / "no/file", "x"), CreateResult::kFailed);
}

TEST(TemporaryFile, IsHiddenUnlikeAnyOtherAndGoneAtTheEnd) {
  const test::TempFolder folder;
  {
    const TemporaryFile one(folder / "file"), other(folder / "file");
    EXPECT_NE(one.Path(), other.Path());
    EXPECT_TRUE(TextFromPath(one.Path().filename()).starts_with('.'));
    EXPECT_EQ(Entries(folder.path()), 2);
  }
  EXPECT_EQ(Entries(folder.path()), 0);
}

TEST(RemoveTemporaryFiles, TakesWhatNobodyWritesAnyMore) {
  const test::TempFolder folder;
  const TemporaryFile running(folder / "file");
  const std::string left = ".tdx-" + std::string(32, '0');
  for (const std::string& name :
       {left, left + "0", ".tdx-x"s, ".tdx-0"s, ".tonadex-datos"s, "vals.1"s}) {
    folder.Write(name, "");
  }
  RemoveTemporaryFiles(folder.path());
  EXPECT_EQ(Entries(folder.path()), 6);
  EXPECT_FALSE(fs::exists(folder / left));
  EXPECT_TRUE(fs::exists(running.Path()));
  RemoveTemporaryFiles(folder / "none");
}

#ifndef _WIN32
TEST(Replace, AKilledWriterLeavesTheOldContent) {
  const test::TempFolder folder;
  folder.Write("file", "old");
  const pid_t writer = ::fork();
  if (writer == 0) {
    const TemporaryFile file(folder / "file");
    ::_exit(file.Write("new") ? 0 : 1);  // runs no destructors
  }
  int status = 1;
  ::waitpid(writer, &status, 0);
  EXPECT_EQ(status, 0);
  EXPECT_EQ(folder.Read("file"), "old");
  EXPECT_EQ(Entries(folder.path()), 2);
  RemoveTemporaryFiles(folder.path());
  EXPECT_EQ(Entries(folder.path()), 1);
}

TEST(WriteBytes, LeavesTheOldFileOnAFullDisk) {
  const test::TempFolder folder;
  folder.Write("file", "old");
  {
    const test::FullDisk full(3);
    EXPECT_EQ(ErrorOf([&] { WriteBytes(folder / "file", "long"); }), 57);
    EXPECT_EQ(ErrorOf([&] { WriteBytes("/dev/full", "x"); }), 57);
    EXPECT_EQ(Create(folder / "new", "long"), CreateResult::kFailed);
  }
  EXPECT_EQ(folder.Read("file"), "old");
  EXPECT_EQ(Entries(folder.path()), 1);
}

TEST(Replace, FollowsLinksAndKeepsPermissions) {
  const test::TempFolder folder;
  folder.Write("file", "old");
  fs::permissions(folder / "file", fs::perms::owner_all);
  fs::create_symlink("file", folder / "link");
  fs::create_symlink("new", folder / "dangling");
  fs::create_symlink("loop", folder / "loop");
  EXPECT_TRUE(Replace(folder / "link", "long", Durability::kRename));
  EXPECT_TRUE(Replace(folder / "dangling", "x", Durability::kDisk, Access::kOwnerOnly));
  EXPECT_FALSE(Replace(folder / "loop", "x"));
  EXPECT_EQ(Create(folder / "loop", "x"), CreateResult::kExists);
  EXPECT_TRUE(fs::is_symlink(folder / "link") && fs::is_symlink(folder / "dangling"));
  EXPECT_EQ(folder.Read("file"), "long");
  EXPECT_EQ(fs::status(folder / "file").permissions(), fs::perms::owner_all);
  EXPECT_EQ(folder.Read("new"), "x");
  EXPECT_EQ(fs::status(folder / "new").permissions(),
            fs::perms::owner_read | fs::perms::owner_write);
  EXPECT_EQ(Entries(folder.path()), 5);
}
#endif

}  // namespace
}  // namespace tonadex::files
