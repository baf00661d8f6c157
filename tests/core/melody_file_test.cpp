#include "core/melody_file.h"
#include "core/files.h"

#include <gtest/gtest.h>

#include <sstream>

#include "tests/core/table.h"
#include "tests/core/test_melody.h"
#include "tests/support/temp_folder.h"
#ifndef _WIN32
#include "tests/support/full_disk.h"
#endif

namespace tonadex::core {
namespace {

using namespace std::string_view_literals;
using test::ErrorOf;

std::string Lines(std::string_view bytes, std::size_t maxBytes) {
  std::istringstream input{std::string(bytes)};
  std::string all;
  while (const auto line = ReadLine(input, maxBytes)) {
    all += "[" + *line + "]";
  }
  return all;
}

TEST(ReadLine, EndsAtEveryKindOfLineEnd) {
  EXPECT_EQ(Lines("", 9), "");
  EXPECT_EQ(Lines("a\rb\nc\r\nd", 9), "[a][b][c][d]");
  EXPECT_EQ(Lines("a\n\r\n\n\r\r", 9), "[a][][][][]");
  EXPECT_EQ(Lines("a\0b\n\xFF"sv, 9), "[a\0b][\xFF]"sv);
  EXPECT_EQ(Lines("abc\nabcd\nabcdef\nx", 3), "[abc][abcd][abcd][x]") << "cut to one byte more";
}

TEST(ReadMelodyLine, TakesTheFirstLineInEitherEncoding) {
  const test::TempFolder folder;
  for (const std::string_view bytes :
       {"\xC3\xB1:\r\nz"sv, "\xF1:\rz"sv, "\xEF\xBB\xBF\xC3\xB1:"sv, "\xF1:"sv}) {
    folder.Write("m.1", bytes);
    EXPECT_EQ(ReadMelodyLine(folder / "m.1"), "\xF1:") << testing::PrintToString(bytes);
  }
  folder.Write("m.1", "");
  EXPECT_EQ(ReadMelodyLine(folder / "m.1"), "");
  folder.Write("m.1", std::string(kMaxLineBytes + 9, 'x'));
  EXPECT_EQ(ReadMelodyLine(folder / "m.1").size(), kMaxLineBytes);
  EXPECT_EQ(ErrorOf([&] { ReadMelodyLine(folder / "none.1"); }), 53);
  EXPECT_EQ(ErrorOf([&] { ReadMelodyLine(folder.path()); }), 53);
}

TEST(WriteBytes, WritesOrFails) {
  const test::TempFolder folder;
  const std::string name = folder.path().string() + "/a\xF1o";  // a Windows-1252 text
  WriteBytes(PathFromText(name), "long before");
  WriteBytes(PathFromText(name), "\r\n\0\xFF"sv);
  EXPECT_EQ(folder.Read(std::filesystem::path(u8"año")), "\r\n\0\xFF"sv);
  EXPECT_EQ(TextFromPath(PathFromText(name)), name);
  EXPECT_EQ(TextFromPath(std::filesystem::path(u8"中")), "?");
  EXPECT_EQ(ErrorOf([&] { WriteBytes(folder.path(), "x"); }), 57);
  EXPECT_EQ(ErrorOf([&] { WriteBytes(folder / "no/file", "x"); }), 57);
}

#ifndef _WIN32
TEST(WriteBytes, LeavesTheOldFileOnAFullDisk) {
  namespace fs = std::filesystem;
  const test::TempFolder folder;
  folder.Write("file", "old");
  fs::permissions(folder / "file", fs::perms::owner_read | fs::perms::owner_write);
  fs::create_symlink(folder / "file", folder / "link");
  {
    const test::FullDisk full(3);
    for (const char* name : {"file", "link", "new"}) {
      EXPECT_EQ(ErrorOf([&] { WriteBytes(folder / name, "long"); }), 57) << name;
    }
    EXPECT_EQ(ErrorOf([&] { WriteBytes("/dev/full", "x"); }), 57);
  }
  EXPECT_EQ(folder.Read("file"), "old");
  WriteBytes(folder / "link", "long");
  EXPECT_EQ(folder.Read("file"), "long");
  EXPECT_EQ(fs::status(folder / "file").permissions(),
            fs::perms::owner_read | fs::perms::owner_write);
  EXPECT_TRUE(fs::is_symlink(folder / "link"));
  EXPECT_EQ(std::distance(fs::directory_iterator(folder.path()), {}), 2);
}
#endif

TEST(RepertoireRow, IsNameAndStem) {
  for (const test::Row& row : test::Table("Rows")) {
    MelodyRow made;
    const int error = ErrorOf([&] { made = RepertoireRow(row[1], row[0]); });
    EXPECT_EQ(made.text, row[2]) << row[0];
    EXPECT_EQ(std::to_string(error != 0 ? error : made.number), row[3]) << row[0];
  }
  for (const test::Row& row : test::Table("Names")) {
    EXPECT_EQ(ScanName(row[0]), row[1]);
  }
}

TEST(RowStem, AndTheFileThatItNames) {
  for (const test::Row& row : test::Table("Stems")) {
    EXPECT_EQ(MelodyFileName(row[0], 120), row[1]);
  }
  EXPECT_EQ(UndoSharpEscape("8cjuh9hay.5,juh9ha,JUH9HAY"), "8c#.5,juh9ha,JUH9HAY");
}

}  // namespace
}  // namespace tonadex::core
