#pragma once

#include <cstdint>

// Measures and colours that the windows have on every toolkit, chosen once here. Distances are
// device-independent pixels, multiples of the grid where they can be.
namespace tonadex::shell {

inline constexpr int kGrid = 8;
inline constexpr int kPageMargin = 2 * kGrid;
inline constexpr int kRadius = 6;
inline constexpr int kBannerHeight = 60;
inline constexpr int kListWidth = 280;  // beside a result

// The main window when it opens and at its smallest.
inline constexpr int kFirstWidth = 1000, kFirstHeight = 700;
inline constexpr int kLeastWidth = 900, kLeastHeight = 600;

inline constexpr int kFollowMs = 30;    // between two looks at where a melody sounds
inline constexpr int kCopiedMs = 1500;  // how long the button says so
inline constexpr int kHoldMs = 600;     // as long as a phone takes a key for held

using Rgb = std::uint32_t;  // 0xRRGGBB

// Colours that no system palette names.
struct Tones {
  Rgb accent;      // the one accent: marks, links, the sounding note
  Rgb accentText;  // on a ground of the accent
  Rgb good, bad;   // the live check's sentence
  Rgb displayGround, displayInk;
};
inline constexpr Tones kLightTones = {.accent = 0x17684A,
                                      .accentText = 0xFFFFFF,
                                      .good = 0x17684A,
                                      .bad = 0xA8321F,
                                      .displayGround = 0xC9DAB2,
                                      .displayInk = 0x101F10};
inline constexpr Tones kDarkTones = {.accent = 0x5CC49A,
                                     .accentText = 0x0A1F16,
                                     .good = 0x5CC49A,
                                     .bad = 0xF0917F,
                                     .displayGround = 0x0F1A10,
                                     .displayInk = 0xC2E2AB};

struct SplashLook {
  int width, height;
  Rgb ground, ink;
  double pattern;  // opacity of the melody's bars
};
inline constexpr SplashLook kSplash = {420, 240, 0x125039, 0xF2F8E9, 0.22};

}  // namespace tonadex::shell
