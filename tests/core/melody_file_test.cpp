#include "core/melody_file.h"

#include <gtest/gtest.h>

#include "tests/core/table.h"
#include "tests/core/test_melody.h"

namespace tonadex::core {
namespace {

using test::ErrorOf;

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
