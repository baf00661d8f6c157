#include <gtest/gtest.h>

#include <QApplication>

#ifdef TONADEX_THEMED
#include "shell/qt/theme/theme.h"
#endif

int main(int argc, char** argv) {
  if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM")) {
    qputenv("QT_QPA_PLATFORM", "offscreen");
  }
  testing::InitGoogleTest(&argc, argv);
  QApplication application(argc, argv);
#ifdef TONADEX_THEMED
  tonadex::shell::ApplyTheme(application, false);
#endif
  return RUN_ALL_TESTS();
}
