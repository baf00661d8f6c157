#pragma once

#include <gtest/gtest.h>

#include <optional>
#include <string>

#include "app/form1.h"
#include "core/windows1252.h"
#include "tests/support/test_program.h"

// Checks that every window must pass: the controls are drawn, read back and connected as the
// model's tables say.
namespace tonadex::test {

// The bound controls as the user sees and operates them. Texts are Windows-1252.
struct Screen {
  virtual ~Screen() = default;
  virtual void Draw() = 0;
  virtual void CopyIn() = 0;
  virtual bool Exists(const app::ControlInfo& info) = 0;
  virtual bool Visible(const app::ControlInfo& info) = 0;
  virtual bool Enabled(const app::ControlInfo& info) = 0;
  // For a list its selected row; empty if the binding draws no text.
  virtual std::optional<std::string> Shown(const app::ControlInfo& info) = 0;
  // False if the user cannot type into the control, or cannot choose a row.
  virtual bool Type(const app::ControlInfo& info, const std::string& text) = 0;
  virtual bool Choose(const app::ControlInfo& info, int row) = 0;
  // Triggers the system's event.
  virtual void Do(app::Event event, const app::ControlInfo& info) = 0;
};

// Every control is drawn and read back, and every handler is called; `dispatched` counts the
// handler calls of the binding. A saved model that is missing from the catalogue selects no row and
// is kept.
inline void CheckBinding(TestProgram& test, app::Form1& form, Screen& screen,
                         const int& dispatched) {
  const std::string text(core::FromUtf8("Canción ñ € «x»"));
  for (const app::ControlInfo& info : app::Controls()) {
    SCOPED_TRACE(info.name);
    app::Control& control = form.*info.member;
    const bool drawn = info.look != app::Look::kStorage && info.look != app::Look::kTimer;
    ASSERT_EQ(screen.Exists(info), drawn);
    if (!drawn) {
      continue;
    }
    control.rows = {{"uno", 1}, {text, 2}};
    control.Select(1);
    const bool worded = info.look <= app::Look::kMark;  // labels and buttons
    control.caption = worded ? text : "no caption";
    control.text = info.look == app::Look::kCard ? "" : worded ? "no text" : text;
    for (const bool on : {true, false}) {
      control.visible = on;
      control.enabled = !on;
      screen.Draw();
      EXPECT_EQ(screen.Visible(info), on);
      EXPECT_EQ(screen.Enabled(info), !on);
    }
    EXPECT_EQ(screen.Shown(info).value_or(text), text);
    const std::string typed = info.look == app::Look::kArea ? "\xE1\r\nb" : "\xE1\xF1o";
    if (screen.Type(info, typed)) {
      screen.CopyIn();
      EXPECT_EQ(control.text, typed);
    } else if (screen.Choose(info, 0)) {
      screen.CopyIn();
      EXPECT_EQ(control.listIndex, 0);
      EXPECT_EQ(control.text, "uno");
    }
  }
  for (const app::ControlInfo& info : app::Controls()) {
    for (const app::EventHandler& on : {info.on, info.also}) {
      if (on.handler != nullptr) {
        const int before = dispatched;
        screen.Do(on.event, info);
        EXPECT_EQ(dispatched, before + 1) << info.name << ", event " << static_cast<int>(on.event);
      }
    }
  }
  test.program.gPhoneModel = "0";
  form.cmdopciones_Click();
  form.Refresh();
  screen.Draw();
  screen.CopyIn();
  EXPECT_EQ(form.cmbformatos.listIndex, -1);
  form.cmdbuscar_Click();
  EXPECT_EQ(test.program.gPhoneModel, "0");
}

}  // namespace tonadex::test
