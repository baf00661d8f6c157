#include <gtest/gtest.h>

#include <random>

#include "core/rtttl.h"
#include "core/text.h"
#include "core/windows1252.h"
#include "phones/rtttl_check.h"
#include "phones/rtttl_repair.h"
#include "tests/core/table.h"

namespace tonadex::phones {
namespace {

TEST(CheckRtttl, MarksAndNamesEveryFault) {
  for (const test::Row& row : test::Table("Checks")) {
    const std::string text = core::FromUtf8(row[0]);
    const MelodyCheck check = CheckRtttl(text);
    const bool good = row[1] == "-";
    EXPECT_EQ(check.verdict == Verdict::kBad, !good) << row[0];
    EXPECT_TRUE(core::ToUtf8(check.sentence).starts_with(row[2]))
        << row[0] << ": " << core::ToUtf8(check.sentence);
    std::string marked;
    for (const RtttlFault& fault : check.faults) {
      marked += (marked.empty() ? "" : ";") + text.substr(fault.where.start, fault.where.length);
    }
    if (!good) {
      EXPECT_EQ(std::to_string(check.faults.front().note), row[1]) << row[0];
    }
    if (row.fields.size() > 3) {
      EXPECT_EQ(marked, row[3]) << row[0];
    }
  }
}

TEST(RepairRtttl, MendsWhatIsFoundOnTheNet) {
  for (const test::Row& row : test::Table("Repairs")) {
    std::string texts;
    std::string change;
    for (const RepairedMelody& melody : RepairRtttl(FromPasted(row[0]))) {
      change = texts.empty() && !melody.changes.empty() ? melody.changes.front() : change;
      texts += (texts.empty() ? "" : "\n") + core::ToUtf8(melody.text);
      EXPECT_EQ(CheckRtttl(melody.text).verdict, Verdict::kGood) << melody.text;
    }
    EXPECT_EQ(texts, row[1]) << row[0];
    EXPECT_TRUE(core::ToUtf8(change).starts_with(row[2]) && change.empty() == row[2].empty())
        << row[0] << ": " << core::ToUtf8(change);
  }
}

}  // namespace
}  // namespace tonadex::phones
