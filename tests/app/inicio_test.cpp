#include "app/inicio.h"

#include <gtest/gtest.h>

#include <string>

#include "tests/core/table.h"
#include "tests/support/test_program.h"

namespace tonadex::app::inicio_test {

TEST(Inicio, LastsOneInterval) {
  test::TestProgram test;
  inicio splash(test.program);
  EXPECT_FALSE(splash.Timer1.enabled);
  splash.Form_Load(42);
  EXPECT_EQ(test.shell.topMost, std::vector<std::intptr_t>{42});
  EXPECT_TRUE(splash.Timer1.enabled);
  EXPECT_EQ(splash.Timer1.interval, 2000u);
  EXPECT_FALSE(splash.finished);
  splash.Timer1_Timer();
  EXPECT_TRUE(splash.finished);
  EXPECT_FALSE(splash.Timer1.enabled);
}

TEST(Inicio, ShowsTheFirstItemOfTheVersionFile) {
  for (const test::Row& row : test::Table("Versions")) {
    SCOPED_TRACE(row[0]);
    test::TestProgram test;
    if (row[0] != "(none)") {
      test.folder.Write("ver.dat", row[0]);
    }
    inicio splash(test.program);
    splash.Form_Load(0);
    EXPECT_EQ(splash.Label1.caption, row[1]);
    EXPECT_EQ(test.program.gVersion, row[2]);
  }
}

// The first-run hint is always hidden, because a missing model reads as "0".
TEST(Inicio, TakesTheSavedModel) {
  for (const test::Row& row : test::Table("Settings")) {
    SCOPED_TRACE(row[1]);
    test::TestProgram test;
    if (row[0] != "0") {
      test.registry.SetValue(kHkeyClassesRoot, "tonadex\\", "modelo",
                             {static_cast<std::uint32_t>(std::stoul(row[0])), row[1]});
    }
    inicio splash(test.program);
    splash.Form_Load(0);
    EXPECT_EQ(test.program.gPhoneModel, row[2]);
    EXPECT_FALSE(splash.Frame1.visible);
  }
}

}  // namespace tonadex::app::inicio_test
