#include "app/cls_open_save.h"

#include <gtest/gtest.h>

#include <string>

#include "core/runtime_error.h"
#include "tests/support/fakes.h"

namespace tonadex::app::cls_open_save_test {

using namespace std::string_literals;

struct ClsOpenSave : testing::Test {
  test::FakeFileDialogs dialogs;
  clsOpenSave dialog{dialogs};
};

TEST_F(ClsOpenSave, StoresTheFilterWithNuls) {
  EXPECT_EQ(dialog.Filter(), "All Files (*.*)\0*.*\0"s);
  for (const auto& [given, stored] : {std::pair{" (*.kws)|*.kws|", " (*.kws)\0*.kws\0\0"s},
                                      std::pair{"Texto|*.txt", "Texto\0*.txt\0"s},
                                      std::pair{"Texto|*.txt||", "Texto\0*.txt\0\0"s}}) {
    dialog.SetFilter(given);
    EXPECT_EQ(dialog.Filter(), stored);
  }
}

TEST_F(ClsOpenSave, ReportsACancelOnlyWithCancelError) {
  dialog.FileName = "before";
  EXPECT_EQ(dialog.ShowOpen(), kDialogClosed);
  dialog.CancelError = true;
  EXPECT_EQ(dialog.ShowSave(), kDialogCancelled);
  EXPECT_EQ(dialog.FileName, "before");
  dialogs.answers = {"C:\\mi carpeta\\vals.kws"};
  EXPECT_EQ(dialog.ShowOpen(), kDialogClosed);
  EXPECT_EQ(dialog.FileName, "C:\\mi carpeta\\vals.kws");
  EXPECT_EQ(dialog.FileTitle, "vals.kws");
  EXPECT_EQ(dialog.FileExt, "kws");
  dialogs.answers = {"C:\\mi.carpeta\\vals"};
  dialog.ShowOpen();
  EXPECT_EQ(dialog.FileExt, "");
  EXPECT_EQ(dialogs.kinds, (std::vector<std::string>{"open", "save", "open", "open"}));
}

TEST_F(ClsOpenSave, FailsBeforeTheDialogForANameThatDoesNotFit) {
  dialog.FileName = std::string(261, 'x');
  dialog.ShowSave();
  dialog.FileName += 'x';
  EXPECT_THROW(dialog.ShowSave(), core::RunTimeError);
  EXPECT_EQ(dialogs.asked.size(), 1u);
}

}  // namespace tonadex::app::cls_open_save_test
