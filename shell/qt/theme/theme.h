#pragma once

#include <QColor>
#include <QFont>
#include <QString>

#include "app/look.h"

class QApplication;

// Type, spacing and colour of the program, chosen once here.
namespace tonadex::shell {

using namespace app::look;

struct Theme : Colours<QColor> {
  bool dark = false;
  QFont body{}, small{}, title{}, heading{}, mono{};
  double scale = 1;        // of the type, by which lengths of the layout grow, too
  int controlHeight = 36;  // buttons and one-line fields
};

// The theme that fits the application's palette and font as they are now.
// Light or dark follows the system's palette.
Theme CurrentTheme();

// Gives the application its style, palette and style sheet. Call before the first window and again
// when the system's palette or font changed: windows that stand follow. `dark` decides where the
// system names no colours of its own.
void ApplyTheme(QApplication& application, bool dark);

}  // namespace tonadex::shell
