#include "shell/win32/binding.h"

#include <gtest/gtest.h>

#include "core/windows1252.h"
#include "platform/win32/wide_text.h"
#include "shell/win32/window_text.h"
#include "tests/support/test_program.h"
#include "tests/win32/user.h"

namespace tonadex::test {
namespace {

using namespace core::literals;
using app::Control;
using app::ControlKind;
using app::Event;
using app::Look;
using shell::BoundControl;

// The model bound to windows, without the main window around it.
struct BoundForm {
  BoundForm() { form.Form_Load(); }
  ~BoundForm() { DestroyWindow(parent); }

  TestProgram test;
  app::Form1 form{test.program};
  shell::Theme theme{96};
  HWND parent = CreateWindowExW(0, L"STATIC", L"", WS_POPUP, 0, 0, 800, 600, nullptr, nullptr,
                                nullptr, nullptr);
  int dispatched = 0;
  shell::Binding binding{form, parent, theme, [this](const auto&) { ++dispatched; }};
};

bool HasStyle(HWND window, LONG_PTR style) {
  return (GetWindowLongPtrW(window, GWL_STYLE) & style) != 0;
}

void SetEverything(const BoundControl& bound, Control& control, const std::string& text) {
  control.visible = true;
  control.enabled = false;
  control.caption = text;
  control.text = text;
  if (bound.look == Look::kList || bound.look == Look::kComboBox) {
    control.rows = {{"uno", 1}, {text, 2}};
    control.Select(1);
  }
}

std::string ShownIn(const BoundControl& bound) {
  if (bound.list == nullptr) {
    return TextIn(bound.window);
  }
  std::wstring row(100, L'\0');
  row.resize(static_cast<std::size_t>(SendMessageW(bound.window, LB_GETTEXT,
                                                   static_cast<WPARAM>(bound.list->Selected()),
                                                   reinterpret_cast<LPARAM>(row.data()))));
  return platform::FromWide(row);
}

TEST(WindowsBinding, EveryControlIsDrawnAsItStandsAndReadBack) {
  BoundForm t;
  ASSERT_EQ(t.binding.Controls().size(), app::Controls().size());
  for (const BoundControl& bound : t.binding.Controls()) {
    SCOPED_TRACE(bound.info->name);
    Control& control = t.form.*bound.info->member;
    if (bound.info->kind == ControlKind::kStorage || bound.info->kind == ControlKind::kTimer) {
      EXPECT_EQ(bound.window, nullptr);
      continue;
    }
    ASSERT_NE(bound.window, nullptr);
    const std::string text =
        std::string(u8"Canción ñ € "_w) + std::to_string(bound.info->name.size());
    SetEverything(bound, control, text);
    t.binding.Draw();
    EXPECT_TRUE(HasStyle(bound.window, WS_VISIBLE));
    EXPECT_TRUE(HasStyle(bound.window, WS_DISABLED));
    if (bound.browser == nullptr && bound.display == nullptr) {
      EXPECT_EQ(ShownIn(bound), text);
    }
    control.visible = false;
    control.enabled = true;
    t.binding.Draw();
    EXPECT_FALSE(HasStyle(bound.window, WS_VISIBLE));
    EXPECT_FALSE(HasStyle(bound.window, WS_DISABLED));
    if (bound.look == Look::kLine || bound.look == Look::kArea || bound.look == Look::kComboBox) {
      SetWindowTextW(bound.window, L"\u00E1b");
      t.binding.CopyIn();
      EXPECT_EQ(control.text,
                "\xE1"
                "b");
    } else if (bound.list != nullptr) {
      SendMessageW(bound.window, LB_SETCURSEL, 0, 0);
      t.binding.CopyIn();
      EXPECT_EQ(control.listIndex, 0);
      EXPECT_EQ(control.text, "uno");
    }
  }
}

// Raises an event as the system reports it; false for one that comes another way.
bool Report(BoundForm& t, const app::HandlerInfo& row) {
  const BoundControl& bound = t.binding.Of(row.control);
  const int id = GetDlgCtrlID(bound.window);
  const bool list = bound.list != nullptr;
  switch (row.event) {
    case Event::kClick:
      return t.binding.Command(id, list ? LBN_SELCHANGE : BN_CLICKED);
    case Event::kActivate:
      return t.binding.Command(id, LBN_DBLCLK);
    case Event::kChange:
      return t.binding.Command(id, bound.look == Look::kComboBox ? CBN_EDITCHANGE : EN_CHANGE);
    case Event::kTick:
      return t.binding.Tick(static_cast<UINT_PTR>(bound.info - app::Controls().data()) +
                            shell::kFirstControlId);
    case Event::kEnter:
    case Event::kNavigation:
      t.binding.Raise(bound, row.event);
      return t.binding.Handles(bound, row.event);
  }
  return false;
}

TEST(WindowsBinding, EveryHandlerOfTheModelIsReached) {
  BoundForm t;
  t.binding.Draw();
  for (const app::HandlerInfo& row : app::Handlers()) {
    SCOPED_TRACE(t.binding.Of(row.control).info->name);
    t.dispatched = 0;
    EXPECT_TRUE(Report(t, row));
    EXPECT_EQ(t.dispatched, 1);
  }
}

TEST(WindowsBinding, ATextThatNoRowHoldsStaysAsItIs) {
  BoundForm t;
  t.test.program.gPhoneModel = "0";
  t.form.cmdopciones_Click();
  t.binding.Draw();
  EXPECT_EQ(t.binding.Of(&app::Form1::cmbformatos).list->Selected(), -1);
  t.binding.CopyIn();
  t.form.cmdbuscar_Click();
  EXPECT_EQ(t.test.program.gPhoneModel, "0");
}

}  // namespace
}  // namespace tonadex::test
