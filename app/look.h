#pragma once

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>

// Measures and colours of the windows, the same with every toolkit. Distances are in
// device-independent pixels, most of them multiples of the grid.
namespace tonadex::app::look {

inline constexpr int kGrid = 8;
inline constexpr int kPageMargin = 2 * kGrid;
inline constexpr int kFieldGap = kGrid / 2;  // a label above its field
inline constexpr int kCardPadding = 2 * kGrid;
inline constexpr int kBannerHeight = 44;
inline constexpr int kLowestView = 80, kTallestView = 280;  // of a melody's drawing
inline constexpr int kRadius = 6;
inline constexpr int kLeastLink = 56;    // minimum width of a button that shrinks
inline constexpr int kMeasure = 720;     // maximum width of texts and forms
inline constexpr int kWideWidth = 1240;  // from this width on pages have more columns

// The main window when it opens and at its smallest.
inline constexpr int kFirstWidth = 1000, kFirstHeight = 700;
inline constexpr int kLeastWidth = 900, kLeastHeight = 600;

inline constexpr int kFollowMs = 30;    // between two updates of a playing melody's position
inline constexpr int kCopiedMs = 1500;  // how long the copy button says "Copiado"
inline constexpr int kHoldMs = 600;     // a key pressed this long counts as held

// Font sizes in px, by app::Font: body, small, title, heading.
inline constexpr std::array<int, 4> kType = {14, 12, 18, 28};
// Limits of the display's font size, px.
inline constexpr int kSmallestType = 16, kLargestType = 40;

using Rgb = std::uint32_t;  // 0xRRGGBB

// Base colours for systems that define none: the window's background, that of cards and fields on
// it, and text.
struct Grounds {
  Rgb window, card, text;
};
inline constexpr Grounds kLightGrounds = {.window = 0xF4F6F3, .card = 0xFFFFFF, .text = 0x1B211E};
inline constexpr Grounds kDarkGrounds = {.window = 0x1B1F1D, .card = 0x242926, .text = 0xE7EBE8};

// Colours that no system palette names.
struct Tones {
  Rgb accent;      // the one accent: marks, links, the sounding note
  Rgb accentText;  // text on the accent
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

// The proportions of mixed colours, 0 to 1.
struct Shares {
  double border, hover, muted, faint;  // of the text
  double wash;                         // of the accent
  double displayFaint, displayEdge;    // of the display's ink
};
inline constexpr Shares kLightShares = {0.2, 0.06, 0.72, 0.63, 0.13, 0.75, 0.4};
inline constexpr Shares kDarkShares = {0.24, 0.06, 0.74, 0.58, 0.18, 0.75, 0.4};
inline constexpr Shares kContrastShares = {1, 0, 1, 1, 0, 1, 1};

// The mixture of two colours; `share` is the proportion of `over`. Works for any order of the
// bytes.
constexpr Rgb Blend(Rgb over, Rgb under, double share) {
  Rgb mixed = 0;
  for (const int shift : {0, 8, 16}) {
    const double part = (over >> shift & 0xFF) * share + (under >> shift & 0xFF) * (1 - share);
    mixed |= static_cast<Rgb>(part) << shift;
  }
  return mixed;
}

inline double Luminance(Rgb colour) {
  const auto linear = [colour](int shift) {
    const double part = static_cast<double>(colour >> shift & 0xFF) / 255;
    return part <= 0.04045 ? part / 12.92 : std::pow((part + 0.055) / 1.055, 2.4);
  };
  return 0.2126 * linear(16) + 0.7152 * linear(8) + 0.0722 * linear(0);
}

// Contrast ratio, from 1 (equal) to 21 (black on white). Text needs kReadable.
inline double Contrast(Rgb a, Rgb b) {
  const auto [low, high] = std::minmax({Luminance(a), Luminance(b)});
  return (high + 0.05) / (low + 0.05);
}
inline constexpr double kReadable = 4.5;

// A contrast theme's colours are the user's choice, so they are not mixed. `mark` and `onMark` are
// the background and the text of what is selected.
constexpr Tones ContrastTones(const Grounds& grounds, Rgb mark, Rgb onMark) {
  return {mark, onMark, grounds.text, grounds.text, grounds.window, grounds.text};
}
// Whether the base colours look like a contrast theme, for systems that do not report one.
inline bool IsStrong(const Grounds& grounds) {
  return std::min(Contrast(grounds.text, grounds.window), Contrast(grounds.text, grounds.card)) >
         20;
}

// All colours of a window, in the type of its toolkit.
template <typename Colour>
struct Colours {
  Colour window, card, text;
  Colour border, hover, muted, faint;  // faint: disabled text
  Colour accent, accentText;
  Colour accentHover, accentWash;  // accentWash: background of what is selected
  Colour good, bad;
  Colour displayGround, displayInk, displayFaint, displayEdge;
};

template <typename Convert>
constexpr auto MixColours(const Grounds& grounds, const Tones& tones, const Shares& shares,
                          Convert convert) {
  const auto mixed = [convert](Rgb over, Rgb under, double share) {
    return convert(Blend(over, under, share));
  };
  const auto& [window, card, text] = grounds;
  return Colours<decltype(convert(window))>{
      .window = convert(window),
      .card = convert(card),
      .text = convert(text),
      .border = mixed(text, window, shares.border),
      .hover = mixed(text, card, shares.hover),
      .muted = mixed(text, window, shares.muted),
      .faint = mixed(text, window, shares.faint),
      .accent = convert(tones.accent),
      .accentText = convert(tones.accentText),
      .accentHover = mixed(tones.accent, text, 0.85),
      .accentWash = mixed(tones.accent, card, shares.wash),
      .good = convert(tones.good),
      .bad = convert(tones.bad),
      .displayGround = convert(tones.displayGround),
      .displayInk = convert(tones.displayInk),
      .displayFaint = mixed(tones.displayInk, tones.displayGround, shares.displayFaint),
      .displayEdge = mixed(tones.displayInk, tones.displayGround, shares.displayEdge)};
}

struct SplashLook {
  int width, height;
  Rgb ground, ink;
  double pattern;  // opacity of the melody's bars
};
inline constexpr SplashLook kSplash = {420, 240, kLightTones.accent, 0xF2F8E9, 0.22};

}  // namespace tonadex::app::look
