#pragma once

#include <QIcon>
#include <QSize>

class QString;

namespace tonadex::shell {

// The picture of that name (a file of icons/), sharp at any size and in the colours of the current
// theme whenever it is painted. A checked button's picture has the accent.
enum class IconInk {
  kText,
  kOnAccent,  // painted on a ground of the accent
  kAccent,
  kBad,
};
QIcon ThemedIcon(const QString& name, IconInk ink = IconInk::kText);

// Size of a picture beside a button's words, in proportion to the body font.
QSize IconSize();

}  // namespace tonadex::shell
