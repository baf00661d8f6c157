#include <gtest/gtest.h>

#include <QApplication>

#include "shell/qt/theme/theme.h"

int main(int argc, char** argv) {
  if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM")) {
    qputenv("QT_QPA_PLATFORM", "offscreen");
  }
  testing::InitGoogleTest(&argc, argv);
  QApplication application(argc, argv);
  tonadex::shell::ApplyTheme(application, false);
  return RUN_ALL_TESTS();
}
