#include <gtest/gtest.h>

#include "app/rtttl_check.h"
#include "app/save_melody.h"
#include "core/windows1252.h"
#include "tests/core/table.h"

namespace tonadex::app::window_words_test {

TEST(FileStem, IsAFileNameOfTheRow) {
  test::ExpectRows("File names", [](const test::Row& row) { return FileStem(row[0]); });
}

TEST(RtttlCheck, NamesTheFirstFault) {
  for (const test::Row& row : test::Table("RTTTL checks")) {
    const phones::MelodyCheck check = RtttlCheck(core::FromUtf8(row[0]));
    EXPECT_EQ(check.verdict, row[1] == "good" ? Verdict::kGood : Verdict::kBad) << row[0];
    EXPECT_TRUE(core::ToUtf8(check.sentence).starts_with(row[2])) << row[0];
  }
}

}  // namespace tonadex::app::window_words_test
