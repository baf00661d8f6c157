#include "app/look.h"

#include <gtest/gtest.h>

namespace tonadex::app::look::look_test {

// Each text colour and the backgrounds on which it is drawn.
TEST(Look, EveryInkCanBeReadOnItsGrounds) {
  const auto bare = [](Rgb colour) { return colour; };
  const Grounds white{0xFFFFFF, 0xFFFFFF, 0}, black{0, 0, 0xFFFF00};
  const std::pair<const char*, Colours<Rgb>> looks[] = {
      {"light", MixColours(kLightGrounds, kLightTones, kLightShares, bare)},
      {"dark", MixColours(kDarkGrounds, kDarkTones, kDarkShares, bare)},
      {"white", MixColours(white, ContrastTones(white, 0x000080, 0xFFFFFF), kContrastShares, bare)},
      {"black", MixColours(black, ContrastTones(black, 0x00FFFF, 0), kContrastShares, bare)}};
  for (const auto& [name, c] : looks) {
    const std::vector<Rgb> plain{c.window, c.card, c.hover};
    const std::vector<Rgb> all{c.window, c.card, c.hover, c.accentWash};
    const std::tuple<const char*, Rgb, std::vector<Rgb>> inks[] = {
        {"text", c.text, all},
        {"muted", c.muted, all},
        {"faint", c.faint, {c.window, c.card}},
        {"accent", c.accent, all},
        {"good", c.good, plain},
        {"bad", c.bad, plain},
        {"on accent", c.accentText, {c.accent, c.accentHover}},
        {"display", c.displayInk, {c.displayGround}},
        {"display, quiet", c.displayFaint, {c.displayGround}}};
    for (const auto& [role, ink, grounds] : inks) {
      for (const Rgb ground : grounds) {
        EXPECT_GE(Contrast(ink, ground), kReadable)
            << name << ": " << role << std::hex << " on " << ground;
      }
    }
    EXPECT_GE(Contrast(c.displayInk, c.displayGround), 10) << name;
  }
  EXPECT_GE(Contrast(kSplash.ink, kSplash.ground), kReadable);
  EXPECT_TRUE(IsStrong(white));
  EXPECT_FALSE(IsStrong(kLightGrounds) || IsStrong(kDarkGrounds));
}

}  // namespace tonadex::app::look::look_test
