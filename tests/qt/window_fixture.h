#pragma once

#include <QAbstractButton>
#include <QApplication>
#include <QListView>
#include <string>

#include "shell/qt/services/qt_services.h"
#include "shell/qt/window/main_window.h"
#include "tests/support/test_program.h"

namespace tonadex::test {

// The main window with a recording platform; needs no display.
struct TestWindow {
  TestWindow() { window.Load(); }

  // A melody of the repertoire.
  void AddMelody(const std::string& fileName, const std::string& line) const {
    test.folder.Write(std::filesystem::path("melodias") / fileName, line);
  }
  QWidget* Widget(const char* name) const { return window.findChild<QWidget*>(name); }
  QList<QAbstractButton*> NavigationRow() const {
    QList<QAbstractButton*> row;
    for (const app::ControlInfo& info : app::Form1::Rows()) {
      if (info.look == app::Look::kNavigation) {
        row << qobject_cast<QAbstractButton*>(window.Bound().Widget(info.member));
      }
    }
    return row;
  }
  // Calls click(), as a mouse click does.
  void Click(const char* name) const { window.findChild<QAbstractButton*>(name)->click(); }
  // As a click on a row of the melodies does.
  void SelectRow(int row) const {
    auto* list = window.findChild<QListView*>("List1");
    list->setCurrentIndex(list->model()->index(row, 0));
  }

  TestProgram test;
  shell::WindowHooks hooks;
  shell::Repainting repainting;
  std::optional<double> position;  // of the sounding melody
  shell::MainWindow window{test.program, hooks, repainting, [this] { return position; }};
  app::Form1& form = window.Form();
};

}  // namespace tonadex::test
