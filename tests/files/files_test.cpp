#include <gtest/gtest.h>

#include <atomic>
#include <future>
#include <set>
#include <sstream>

#include "core/melody_file.h"
#include "core/windows1252.h"
#include "files/list.h"
#include "files/paths.h"
#include "files/read.h"
#include "files/write.h"
#include "tests/core/test_melody.h"
#include "tests/support/temp_folder.h"
#ifndef _WIN32
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include "tests/support/full_disk.h"
#endif

namespace tonadex::files::files_test {

namespace fs = std::filesystem;
using namespace std::string_view_literals;
using namespace std::string_literals;
using namespace core::literals;
using test::ErrorOf;

TEST(ReadFirstLine, EndsAtALineEndOrOneByteBeyondItsBound) {
  for (const auto& [bytes, line] :
       {std::pair{"", ""}, {"\na", ""}, {"a\rb", "a"}, {"abc\nd", "abc"}, {"abcde", "abcd"}}) {
    std::istringstream input{bytes};
    EXPECT_EQ(ReadFirstLine(input, 3), line);
  }
}

TEST(ReadMelodyLine, TakesTheFirstLineInEitherEncoding) {
  const test::TempFolder folder;
  for (const std::string_view bytes :
       {"\xC3\xB1:\r\nz"sv, "\xF1:\rz"sv, "\xEF\xBB\xBF\xC3\xB1:"sv, "\xF1:"sv}) {
    folder.Write("m.1", bytes);
    EXPECT_EQ(ReadMelodyLine(folder / "m.1"), "\xF1:") << testing::PrintToString(bytes);
  }
  folder.Write("m.1", std::string(core::kMaxLineBytes + 9, 'x'));
  EXPECT_EQ(ReadMelodyLine(folder / "m.1").size(), core::kMaxLineBytes);
}

TEST(Read, KeepsToItsBound) {
  const test::TempFolder folder;
  const std::string bytes = std::string("\r\n\0\x1A"sv) + std::string(99'996, '\xF1');
  folder.Write("f", bytes);
  EXPECT_EQ(ReadBytes(folder / "f"), bytes);
  EXPECT_EQ(ReadWhole(folder / "f", bytes.size()), bytes);
  EXPECT_EQ(ReadWhole(folder / "f", bytes.size() - 1), std::nullopt);
  EXPECT_EQ(ReadHead(folder / "f", 99'995), bytes.substr(0, 99'995));
  EXPECT_EQ(ReadShared(folder / "f", bytes.size()), bytes);
  EXPECT_EQ(ReadShared(folder / "f", bytes.size() - 1), std::nullopt);
  const auto head = ReadSharedHead(folder / "f", 4);
  EXPECT_EQ(head->bytes + std::to_string(head->status.size), bytes.substr(0, 4) + "100000");
  using namespace std::chrono;
  last_write_time(folder / "f", last_write_time(folder / "f") + hours(1));
  EXPECT_GT(ReadSharedHead(folder / "f", 4)->status.modified, head->status.modified);
  folder.Write("f", "");
  EXPECT_EQ(ReadWhole(folder / "f"), "");
  EXPECT_EQ(ReadMelodyLine(folder / "f"), "");
  std::filesystem::resize_file(folder / "f", kMaxFileBytes + 1);
  EXPECT_EQ(ErrorOf([&] { ReadBytes(folder / "f"); }), 57);
}

// Opening a pipe without a writer must not block.
TEST(Read, RefusesAtOnceWhatIsNoRegularFile) {
  const test::TempFolder folder;
  std::vector<std::filesystem::path> refused = {folder / "none", folder.path()};
#ifndef _WIN32
  ASSERT_EQ(::mkfifo((folder / "pipe").c_str(), 0600), 0);
  std::filesystem::create_symlink(folder / "pipe", folder / "link");
  refused.insert(refused.end(), {folder / "pipe", folder / "link", "/dev/zero", "/dev/tty"});
#endif
#ifndef _WIN32
  folder.Write("file", "x");
  std::filesystem::create_symlink("file", folder / "shared");
  EXPECT_EQ(ReadHead(folder / "shared", 9), "x");
  EXPECT_EQ(ReadShared(folder / "shared", 9), std::nullopt);
#endif
  for (const auto& file : refused) {
    EXPECT_EQ(ReadHead(file, 9), std::nullopt) << file;
    EXPECT_EQ(ReadShared(file, 9), std::nullopt) << file;
    EXPECT_EQ(ErrorOf([&] { ReadBytes(file); }), 53) << file;
    EXPECT_EQ(ErrorOf([&] { ReadMelodyLine(file); }), 53) << file;
  }
}

TEST(ListFiles, GivesEachRegularFileItsOwnStatus) {
  const test::TempFolder folder;
  std::set<std::string> expected;  // "name size"; enough files that several threads read them
  for (int i = 0; i < 2'500; ++i) {
    const std::string name = "f" + std::to_string(i);
    if (i % 10 == 0) {
      std::filesystem::create_directory(folder / name);
    } else {
      folder.Write(name, std::string(static_cast<std::size_t>(i % 99), 'x'));
      expected.insert(name + " " + std::to_string(i % 99));
    }
  }
  std::set<std::string> listed;
  for (const ListedFile& file : ListFiles(folder.path(), [](auto name) { return name != "f7"; })) {
    listed.insert(file.name + " " + std::to_string(file.status.size));
  }
  expected.erase("f7 7");
  EXPECT_EQ(listed, expected);
}

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

}  // namespace tonadex::files::files_test
