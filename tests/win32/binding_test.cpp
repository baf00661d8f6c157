#include "shell/win32/binding.h"

#include <gtest/gtest.h>
#include <richedit.h>

#include <shlobj.h>

#include <algorithm>

#include "platform/win32/wide_text.h"
#include "shell/win32/main_window.h"
#include "tests/support/binding_checks.h"
#include "tests/win32/user.h"

namespace tonadex::test::binding_test {

using app::ControlInfo;
using app::Event;
using app::Look;
using shell::BoundControl;

// The model bound to windows, without the main window around them.
struct BoundForm : Screen {
  BoundForm() { form.Form_Load(); }
  ~BoundForm() override { DestroyWindow(parent); }

  const BoundControl& Of(const ControlInfo& info) const { return binding.Of(info.member); }
  bool HasStyle(const ControlInfo& info, LONG_PTR style) const {
    return (GetWindowLongPtrW(Of(info).window, GWL_STYLE) & style) != 0;
  }
  void Draw() override { binding.Draw(); }
  void CopyIn() override { binding.CopyIn(); }
  bool Exists(const ControlInfo& info) override { return Of(info).window != nullptr; }
  bool Visible(const ControlInfo& info) override { return HasStyle(info, WS_VISIBLE); }
  bool Enabled(const ControlInfo& info) override { return !HasStyle(info, WS_DISABLED); }
  std::optional<std::string> Shown(const ControlInfo& info) override {
    const BoundControl& bound = Of(info);
    if (info.look > Look::kNotices && info.look != Look::kComboBox && bound.list == nullptr) {
      return std::nullopt;
    }
    if (bound.list == nullptr) {
      return TextIn(bound.window);
    }
    wchar_t row[100] = {};
    SendMessageW(bound.window, LB_GETTEXT, static_cast<WPARAM>(bound.list->Selected()),
                 reinterpret_cast<LPARAM>(row));
    return platform::FromWide(row);
  }
  bool Type(const ControlInfo& info, const std::string& text) override {
    const bool typed =
        info.look == Look::kLine || info.look == Look::kArea || info.look == Look::kComboBox;
    return typed && SetWindowTextW(Of(info).window, platform::ToWide(text).c_str()) != 0;
  }
  bool Choose(const ControlInfo& info, int row) override {
    return Of(info).list != nullptr &&
           SendMessageW(Of(info).window, LB_SETCURSEL, static_cast<WPARAM>(row), 0) == row;
  }
  void Do(Event event, const ControlInfo& info) override {
    const BoundControl& bound = Of(info);
    const int notification = event == Event::kActivate      ? LBN_DBLCLK
                             : info.look == Look::kComboBox ? CBN_EDITCHANGE
                             : event == Event::kChange      ? EN_CHANGE
                             : bound.list != nullptr        ? LBN_SELCHANGE
                                                            : BN_CLICKED;
    if (event == Event::kTick) {
      binding.Tick(static_cast<UINT_PTR>(bound.Id()));
    } else if (event == Event::kEnter || event == Event::kNavigation ||
               info.look == Look::kSlider) {
      binding.Raise(bound, event);
    } else {
      binding.Command(GetDlgCtrlID(bound.window), notification);
    }
  }

  TestProgram test;
  app::Form1 form{test.program};
  shell::Theme theme{96};
  HWND parent = CreateWindowExW(0, L"STATIC", L"", WS_POPUP, 0, 0, 800, 600, nullptr, nullptr,
                                nullptr, nullptr);
  int dispatched = 0;
  shell::Binding binding{form, parent, theme, [this](const auto&) { ++dispatched; }};
};

TEST(WindowsBinding, DrawsReadsBackAndReachesEveryHandler) {
  BoundForm t;
  CheckBinding(t.test, t.form, t, t.dispatched);
}

TEST(WindowsBinding, PastedSignsKeepTheirMeaning) {
  BoundForm t;
  SetWindowTextW(t.binding.Window(&app::Form1::txtrtttlsube), L"c\x266F,\x2019");
  t.CopyIn();
  EXPECT_EQ(t.form.txtrtttlsube.text, "c#,\x92");
}

TEST(WindowsBinding, TheCursorIsReadBackWithTheText) {
  BoundForm t;
  const HWND notes = t.binding.Window(&app::Form1::txtmelodiacompo);
  SetWindowTextW(notes, L"8c1 4d1");
  SendMessageW(notes, EM_SETSEL, 1, 4);
  t.CopyIn();
  EXPECT_EQ(t.form.txtmelodiacompo.cursor, 4u);
}

TEST(WindowsBinding, DrawingDoesNotRestartATimer) {
  BoundForm t;
  t.form.copiedTimer.enabled = true;
  const auto ticks = [&, id = t.binding.Of(&app::Form1::copiedTimer).Id()] {
    t.Draw();
    MSG tick{};
    return PeekMessageW(&tick, t.parent, WM_TIMER, WM_TIMER, PM_REMOVE) != 0 &&
           tick.wParam == static_cast<WPARAM>(id);
  };
  EXPECT_TRUE(Eventually(ticks));
}

TEST(WindowsBinding, ALineOfTheDisplayEndsWithinItsArea) {
  BoundForm t;
  t.form.cmdrepertorio_Click();
  t.form.Refresh();
  t.Draw();
  const HWND display = t.binding.Window(&app::Form1::textresultado);
  SetWindowPos(display, nullptr, 0, 0, 669, 300, SWP_NOZORDER);  // the line fills it
  RECT area{}, window{};
  SendMessageW(display, EM_GETRECT, 0, reinterpret_cast<LPARAM>(&area));
  GetClientRect(display, &window);
  EXPECT_EQ(area.right, window.right - area.left);
}

TEST(WindowsWindow, TakesTheWholePathsOfDroppedFiles) {
  const std::wstring dropped(L"C:\\uno.txt\0C:\\ñ\0", 16);
  const HGLOBAL memory =
      GlobalAlloc(GHND, sizeof(DROPFILES) + (dropped.size() + 1) * sizeof(wchar_t));
  auto* const files = static_cast<DROPFILES*>(GlobalLock(memory));
  files->pFiles = sizeof(DROPFILES);
  files->fWide = TRUE;
  std::ranges::copy(dropped, reinterpret_cast<wchar_t*>(files + 1));
  GlobalUnlock(memory);
  EXPECT_EQ(shell::DroppedFiles(static_cast<HDROP>(memory)),
            (std::vector<std::filesystem::path>{L"C:\\uno.txt", L"C:\\ñ"}));
}

}  // namespace tonadex::test::binding_test
