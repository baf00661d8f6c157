#include "files/read.h"

#include <gtest/gtest.h>

#include <set>

#include "core/melody_file.h"
#include "files/list.h"
#include "tests/core/test_melody.h"
#include "tests/support/temp_folder.h"
#ifndef _WIN32
#include <sys/stat.h>
#endif

namespace tonadex::files {
namespace {

using namespace std::string_view_literals;
using test::ErrorOf;

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

}  // namespace
}  // namespace tonadex::files
