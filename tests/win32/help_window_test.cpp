#include "shell/win32/help_window.h"

#include <gtest/gtest.h>
#include <richedit.h>

#include "tests/support/temp_folder.h"
#include "tests/win32/user.h"

namespace tonadex::test::help_window_test {

TEST(HelpWindow, MarksEveryHitAndTakesTheMarksAwayAgain) {
  const TempFolder folder;
  folder.Write("TONADEX.HLP", "{\\rtf1\\s1 Tono\\par\\pard un tono, dos TONOS\\par}");
  shell::HelpWindow help;
  help.Open(folder / "TONADEX.HLP");
  const HWND window = FindWindowW(L"TonadexAyuda", nullptr);
  const HWND text = FindWindowExW(window, nullptr, L"RichEdit20W", nullptr);
  const auto marked = [text] {
    std::string marks;
    for (LONG at = 0; at < 25; ++at) {
      CHARRANGE range{at, at + 1};
      CHARFORMAT2W format{};
      format.cbSize = sizeof format;
      SendMessageW(text, EM_EXSETSEL, 0, reinterpret_cast<LPARAM>(&range));
      SendMessageW(text, EM_GETCHARFORMAT, SCF_SELECTION, reinterpret_cast<LPARAM>(&format));
      marks += (format.dwEffects & CFE_AUTOBACKCOLOR) != 0 ? '.' : 'X';
    }
    return marks;
  };
  const HWND search = FindWindowExW(window, nullptr, L"EDIT", nullptr);
  SetWindowTextW(search, L"tono");
  EXPECT_EQ(marked(), "XXXX....XXXX......XXXX...");
  EXPECT_EQ(TextIn(FindWindowExW(window, nullptr, L"STATIC", nullptr)), "1 de 3");
  SetWindowTextW(search, L"dos");
  EXPECT_EQ(marked(), "..............XXX........");
  SetWindowTextW(search, L"");
  EXPECT_EQ(marked(), std::string(25, '.'));
}

}  // namespace tonadex::test::help_window_test
