#pragma once

#include <QColor>

// The colours of a text written for white paper, on a ground that may be dark.
namespace tonadex::shell {

// Contrast of two colours, 1 to 21.
double Contrast(const QColor& a, const QColor& b);

// The colour itself, or the nearest lighter (darker) one that can be read on `ground`.
QColor ReadableInk(const QColor& ink, const QColor& ground);

// A tinted ground: itself on a light page, a dim one of its hue on a dark page.
QColor TintedGround(const QColor& tint, const QColor& page);

}  // namespace tonadex::shell
