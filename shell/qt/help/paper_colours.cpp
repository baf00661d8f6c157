#include "shell/qt/help/paper_colours.h"

#include <algorithm>
#include <cmath>

namespace tonadex::shell {
namespace {

constexpr double kReadable = 4.5;  // the usual least contrast of small type
constexpr float kStep = 0.05F;

double Linear(double part) {
  return part <= 0.04045 ? part / 12.92 : std::pow((part + 0.055) / 1.055, 2.4);
}

double Luminance(const QColor& colour) {
  return 0.2126 * Linear(colour.redF()) + 0.7152 * Linear(colour.greenF()) +
         0.0722 * Linear(colour.blueF());
}

QColor WithLightness(const QColor& colour, float lightness, float saturation = 1) {
  return QColor::fromHslF(std::max(colour.hslHueF(), 0.0F), colour.hslSaturationF() * saturation,
                          std::clamp(lightness, 0.0F, 1.0F));
}

}  // namespace

double Contrast(const QColor& a, const QColor& b) {
  const auto [low, high] = std::minmax({Luminance(a), Luminance(b)});
  return (high + 0.05) / (low + 0.05);
}

QColor ReadableInk(const QColor& ink, const QColor& ground) {
  const float step = Luminance(ground) < 0.18 ? kStep : -kStep;
  QColor readable = ink;
  for (float lightness = ink.lightnessF();
       Contrast(readable, ground) < kReadable && lightness > -kStep && lightness < 1 + kStep;
       lightness += step) {
    readable = WithLightness(ink, lightness);
  }
  return readable;
}

QColor TintedGround(const QColor& tint, const QColor& page) {
  if (page.lightnessF() > 0.5F) {
    return tint;
  }
  constexpr float kQuiet = 0.5F;
  return WithLightness(tint, page.lightnessF() + 0.3F * (1 - tint.lightnessF()) + 0.03F, kQuiet);
}

}  // namespace tonadex::shell
