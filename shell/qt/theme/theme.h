#pragma once

#include <QColor>
#include <QFont>

#include "app/look.h"

class QApplication;
class QPainter;
class QWidget;

// Fonts, measures and colours of the windows.
namespace tonadex::shell {

using namespace app::look;

struct Theme : Colours<QColor> {
  bool dark = false;
  QFont body{}, small{}, title{}, heading{}, mono{};
  double scale = 1;        // of fonts and layout, relative to the smallest body font
  int controlHeight = 36;  // buttons and one-line fields
};

// The theme that fits the application's palette and font as they are now.
// Light or dark follows the system's palette.
Theme CurrentTheme();

// Paints a view's ground: a card, framed in the accent while the view has the focus.
void PaintCard(QPainter& painter, const QWidget& view, const Theme& theme);

// Gives the application its style, palette and style sheet. Call before the first window and again
// when the system's palette or font changed: windows that stand follow. `dark` decides where the
// system names no colours of its own.
void ApplyTheme(QApplication& application, bool dark);

}  // namespace tonadex::shell
