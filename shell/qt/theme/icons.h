#pragma once

#include <QIcon>
#include <QSize>

class QString;

namespace tonadex::shell {

// The program's own picture of that name (a file of icons/), sharp at any size and drawn in the
// colours of the theme that stands when it is painted. A checked button's picture has the accent.
enum class IconInk {
  kText,
  kOnAccent,  // painted on a ground of the accent
  kAccent,
  kBad,
};
QIcon ThemedIcon(const QString& name, IconInk ink = IconInk::kText);

// Beside a button's words: as large as the type asks.
QSize IconSize();

}  // namespace tonadex::shell
