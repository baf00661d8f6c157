#include <gtest/gtest.h>
#include <windows.h>

#include "app/print_sheet.h"
#include "app/settings.h"
#include "core/windows1252.h"
#include "files/paths.h"
#include "files/read.h"
#include "platform/common/program_folder.h"
#include "platform/win32/mci_sequencer.h"
#include "platform/win32/rich_text_box.h"
#include "platform/win32/system_services.h"
#include "platform/win32/web_control.h"
#include "platform/win32/wide_text.h"
#include "platform/win32/windows_registry.h"
#include "tests/core/test_melody.h"
#include "tests/support/temp_folder.h"
#include "tests/win32/windows_process.h"

namespace tonadex::test::services_test {

using namespace core::literals;
using app::kHkeyClassesRoot;

constexpr std::string_view kKey = "tonadex-prueba\\";

class RegistryTest : public testing::Test {
 protected:
  ~RegistryTest() override {
    RegDeleteKeyA(HKEY_CLASSES_ROOT, "tonadex-prueba");
    RegDeleteKeyA(HKEY_CURRENT_USER, "Software\\Classes\\tonadex-prueba");
  }
  std::string Model() { return app::RegReadString(registry, kHkeyClassesRoot, kKey, "modelo", 0); }
  platform::WindowsRegistry registry;
};

TEST_F(RegistryTest, KeepsEveryTextAsItWas) {
  EXPECT_EQ(Model(), "0");
  const std::string texts[] = {" Pulsaciones tipo 1", "3210,3310,3330,3390,8250",
                               std::string(u8"ñ € «á»"_w), std::string(5000, 'x'), "x"};
  for (const std::string& text : texts) {
    app::RegWriteString(registry, kHkeyClassesRoot, kKey, "modelo", text);
    EXPECT_EQ(Model(), text);
  }
  ASSERT_TRUE(registry.SetValue(kHkeyClassesRoot, kKey, "modelo", {REG_DWORD, "\1\2\3\4"}));
  EXPECT_EQ(Model(), "0") << "no text";
  ASSERT_TRUE(
      registry.SetValue(kHkeyClassesRoot, kKey, "modelo", {REG_SZ, std::string("uno\0dos", 7)}));
  EXPECT_EQ(Model(), "uno");
}

TEST_F(RegistryTest, AValueInTheUsersOwnClassesIsFound) {
  HKEY key = nullptr;
  ASSERT_EQ(RegCreateKeyA(HKEY_CURRENT_USER, "Software\\Classes\\tonadex-prueba\\", &key), 0);
  const BYTE text[] = {'m', 'i', 'o'};
  ASSERT_EQ(RegSetValueExA(key, "modelo", 0, REG_SZ, text, sizeof text), 0);
  RegCloseKey(key);
  EXPECT_EQ(Model(), "mio");
}

TEST(MciSequencer, TheSystemAnswersWithItsOwnNumbers) {
  platform::MciSequencer sequencer;
  EXPECT_EQ(sequencer.SendString("close mR2M"), 263);  // MCIERR_INVALID_DEVICE_NAME
  EXPECT_EQ(sequencer.SendString("open Z:\\falta.mid type sequencer alias mR2M"), 275);
  EXPECT_NE(sequencer.SendString("play mR2M notify"), 0);
  EXPECT_EQ(sequencer.PositionMs(), std::nullopt);
}

TEST(SystemServices, KnowTheFoldersAndKeepAWindowOnTop) {
  platform::WindowHooks hooks;
  platform::SystemServices services(hooks, platform::ProgramFolderPath());
  EXPECT_TRUE(std::filesystem::exists(services.ProgramFolder() / "tonadex_win32_test.exe"));
  const TempFolder folder;
  folder.Write("desktop.ini", "x");
  EXPECT_FALSE(services.IsHidden(folder / "desktop.ini"));
  SetFileAttributesW((folder / "desktop.ini").c_str(), FILE_ATTRIBUTE_HIDDEN);
  EXPECT_TRUE(services.IsHidden(folder / "desktop.ini"));
  const std::string temp = services.TempPath();
  EXPECT_TRUE(temp.ends_with('\\'));
  EXPECT_TRUE(std::filesystem::is_directory(temp)) << temp;

  const HWND window = CreateWindowExW(0, L"STATIC", L"", WS_POPUP, 30, 40, 50, 60, nullptr, nullptr,
                                      nullptr, nullptr);
  services.SetTopMost(reinterpret_cast<std::intptr_t>(window));
  RECT place{};
  GetWindowRect(window, &place);
  EXPECT_EQ(place.left, 30);
  EXPECT_EQ(place.bottom, 100);
  EXPECT_NE(GetWindowLongPtrW(window, GWL_EXSTYLE) & WS_EX_TOPMOST, 0);
  DestroyWindow(window);
}

TEST(SystemServices, RepaintWithoutStartingAnythingElse) {
  const HWND window = CreateWindowExW(0, L"EDIT", L"", WS_POPUP | WS_VISIBLE, 0, 0, 50, 60, nullptr,
                                      nullptr, nullptr, nullptr);
  PostMessageW(window, WM_CHAR, 'a', 0);
  InvalidateRect(window, nullptr, FALSE);
  platform::PumpPaint();
  EXPECT_EQ(GetUpdateRect(window, nullptr, FALSE), FALSE) << "painted";
  EXPECT_EQ(GetWindowTextLengthW(window), 0) << "and nothing else";
  DestroyWindow(window);
}

TEST(RichEditBox, FillsTheSheetAndSavesItWithoutPrinter) {
  platform::RichEditBox box;
  const Boxes boxes;
  app::PrintSheet(box, BuildFile("share/tonadex/print.rtf"),
                  {.title = std::string(u8"Cumpleaños (Cumple)"_w),
                   .instructions = "Pulsa las teclas",
                   .tempo = "125",
                   .melody = "4c1 8d1",
                   .model = " Compositor"});
  const auto& said = boxes.recorded.messages;
  const std::string source = box.TextRTF();
  ASSERT_EQ(said.size(), 1u);
  ASSERT_TRUE(said[0].text.starts_with(app::kNoPrinter)) << said[0].text;
  const std::filesystem::path saved =
      files::PathFromText(said[0].text.substr(app::kNoPrinter.size()));
  EXPECT_EQ(files::ReadBytes(saved), source);
  std::filesystem::remove(saved);
  EXPECT_TRUE(source.starts_with("{\\rtf1"));
  for (const std::string_view text : {"Cumplea\\'f1os (Cumple)", "4c1 8d1", "Nokia>Compositor."}) {
    EXPECT_NE(source.find(text), std::string::npos) << text << "\n" << source;
  }
}

TEST(WebControl, StaysSilentWhereNoPageCanBeShown) {
  const HWND parent = CreateWindowExW(0, L"STATIC", L"", WS_POPUP, 0, 0, 200, 200, nullptr, nullptr,
                                      nullptr, nullptr);
  int left = 0;
  {
    platform::WebControl view(parent, platform::WebControl::Links::kReport, [&left] { ++left; });
    ShowWindow(view.window(), SW_SHOW);
    for (const char* url : {"http://127.0.0.1:9/mini.php?version=1 0", "http://[", ""}) {
      view.Navigate(url);
      platform::PumpPaint();
    }
  }
  DestroyWindow(parent);
  EXPECT_EQ(left, 0) << "the program's own navigations are no click";
}

TEST(WideText, EveryByteComesBackAndLinesEndAsWindowsWants) {
  const std::string bytes = AllBytes().substr(1);
  EXPECT_EQ(platform::FromWide(platform::ToWide(bytes)), bytes);
  EXPECT_EQ(platform::FromWide(L"a\x4E00\xD83D\xDE00z"), "a??z");
  EXPECT_EQ(platform::ToWideLines("a\rb\nc\r\nd\r\r"), L"a\r\nb\r\nc\r\nd\r\n\r\n");
  EXPECT_EQ(platform::Utf8FromWide(platform::WideFromUtf8("año €")), "año €");
}

}  // namespace tonadex::test::services_test
