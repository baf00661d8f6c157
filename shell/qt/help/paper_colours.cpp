#include "shell/qt/help/paper_colours.h"

#include <algorithm>

#include "app/look.h"

namespace tonadex::shell {
namespace {

using namespace app::look;

constexpr float kStep = 0.05F;

Rgb Bare(const QColor& colour) {
  return colour.rgb() & 0xFFFFFF;
}

QColor WithLightness(const QColor& colour, float lightness, float saturation = 1) {
  return QColor::fromHslF(std::max(colour.hslHueF(), 0.0F), colour.hslSaturationF() * saturation,
                          std::clamp(lightness, 0.0F, 1.0F));
}

}  // namespace

double Contrast(const QColor& a, const QColor& b) {
  return app::look::Contrast(Bare(a), Bare(b));
}

QColor ReadableInk(const QColor& ink, const QColor& ground) {
  const float step = Luminance(Bare(ground)) < 0.18 ? kStep : -kStep;
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
