#include <gtest/gtest.h>

#include <thread>

#include "app/cls_open_save.h"
#include "platform/win32/file_dialogs.h"
#include "platform/win32/wide_text.h"
#include "tests/support/temp_folder.h"
#include "tests/win32/user.h"

namespace tonadex::test::dialog_test {

constexpr int kNameEdit = 0x480, kNameCombo = 0x47C;  // ids in the system's dialog

HWND NameField(HWND dialog) {
  const HWND edit = GetDlgItem(dialog, kNameEdit);
  return edit != nullptr ? edit : GetDlgItem(dialog, kNameCombo);
}

// Answers this process's next dialog from another thread.
std::jthread Answer(const std::function<void(HWND)>& answer) {
  return std::jthread([answer] {
    const HWND dialog = WaitForWindow(L"#32770", GetCurrentProcessId());
    if (dialog != nullptr && Eventually([&] { return NameField(dialog) != nullptr; })) {
      answer(dialog);
    }
  });
}

TEST(FileDialogs, GiveTheChosenNameBackFieldByField) {
  const TempFolder folder;
  platform::WindowsFileDialogs dialogs;
  app::clsOpenSave dialog(dialogs);
  dialog.InitDir = platform::FromWide(folder.path().wstring());
  dialog.SetFilter(" (*.kws)|*.kws|");
  dialog.DialogTitle = "Guardar melodia";
  dialog.DefaultExt = "kws";
  dialog.CancelError = true;
  std::string title;
  const auto user = Answer([&title](HWND window) {
    title = TextIn(window);
    SendMessageW(NameField(window), WM_SETTEXT, 0, reinterpret_cast<LPARAM>(L"canci\u00F3n"));
    PostMessageW(window, WM_COMMAND, IDOK, 0);
  });
  EXPECT_EQ(dialog.ShowSave(), app::kDialogClosed);
  EXPECT_EQ(title, "Guardar melodia");
  EXPECT_EQ(dialog.FileTitle, "canci\xF3n.kws");
  EXPECT_TRUE(dialog.FileName.ends_with("\\canci\xF3n.kws")) << dialog.FileName;
  EXPECT_EQ(dialog.FileExt, "kws");
  EXPECT_EQ(dialog.FilterIndex, 1);
}

}  // namespace tonadex::test::dialog_test
