// Files as other programs and people write them, and damaged ones.
#include <gtest/gtest.h>

#include "core/runtime_error.h"
#include "core/windows1252.h"
#include "import/open_melody.h"
#include "tests/core/table.h"

namespace tonadex::import {
namespace {

TEST(OpenMelodyFile, ReadsWhatOthersWriteAndSaysWhereItIsDamaged) {
  for (const test::Row& row : test::Table("Files")) {
    SCOPED_TRACE(row[0]);
    std::string got, remarks;
    try {
      const OpenedFile file = OpenMelodyFile(row[0], "Fichero.txt");
      got = core::ToUtf8(file.melodies.at(0).text);
      for (const std::string& remark : file.melodies[0].remarks) {
        remarks += (remarks.empty() ? "" : ";") + core::ToUtf8(remark).substr(0, 17);
      }
    } catch (const core::RunTimeError& error) {
      got = core::ToUtf8(error.what());
    }
    EXPECT_EQ(core::ToUtf8(KindName(RecogniseFile(row[0]))), row[1]);
    EXPECT_EQ(got, row[2]);
    EXPECT_EQ(remarks, row[3]);
  }
}

}  // namespace
}  // namespace tonadex::import
