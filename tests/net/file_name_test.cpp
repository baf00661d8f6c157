#include "net/file_name.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <string>
#include <string_view>

#include "core/runtime_error.h"
#include "core/windows1252.h"
#include "tests/core/table.h"
#include "tests/support/temp_folder.h"

namespace tonadex::net {
namespace {

using namespace core::literals;
using namespace std::string_view_literals;

TEST(IsSafeFileName, AcceptsWhatEveryPlatformHolds) {
  for (const test::Row& row : test::Table("File names")) {
    EXPECT_EQ(IsSafeFileName(core::FromUtf8(row[0])), row[1] == "safe") << row[0];
  }
  EXPECT_TRUE(IsSafeFileName(std::string(kMaxFileNameBytes, 'a')));
  EXPECT_FALSE(IsSafeFileName(std::string(kMaxFileNameBytes + 1, 'a')));
  EXPECT_FALSE(IsSafeFileName(std::string(kMaxFileNameBytes / 2 + 1, '\xF1')));
  EXPECT_FALSE(IsSafeFileName("vals\0.1"sv));
}

// Windows does not allow these characters and control characters in file names.
TEST(IsSafeFileName, KnowsEveryCharacter) {
  std::string refused;
  for (int code = 0; code < 256; ++code) {
    const std::string name = {'a', static_cast<char>(code), 'a'};
    if (!IsSafeFileName(name)) {
      refused += name[1];
    }
  }
  std::string want;
  for (char code = 0; code < 32; ++code) {
    want += code;
  }
  want += "\"*/:<>?\\|\x7F\x81\x8D\x8F\x90\x9D";
  EXPECT_EQ(refused, want);
}

TEST(StoreFile, FailsWithoutATrace) {
  const test::TempFolder folder;
  std::filesystem::create_directories(folder / "inner" / "vals.1");  // a folder has the name
  const auto inner = folder / "inner";
  EXPECT_THROW(StoreFile(inner, "../escaped.1", "x"), core::RunTimeError);
  EXPECT_THROW(StoreFile(inner, "vals.1", "x"), core::RunTimeError);
  EXPECT_THROW(StoreFile(folder / "missing", "vals.1", "x"), core::RunTimeError);
#ifndef _WIN32
  std::filesystem::create_symlink("/dev/null", folder / "device.1");
  EXPECT_THROW(StoreFile(folder.path(), "device.1", "x"), core::RunTimeError);
  std::filesystem::remove(folder / "device.1");
#endif
  const auto entries = std::filesystem::recursive_directory_iterator(folder.path());
  EXPECT_EQ(std::distance(begin(entries), end(entries)), 2);
}

}  // namespace
}  // namespace tonadex::net
