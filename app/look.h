#pragma once

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>

// Measures and colours that the windows have on every toolkit, chosen once here. Distances are
// device-independent pixels, multiples of the grid where they can be.
namespace tonadex::app::look {

inline constexpr int kGrid = 8;
inline constexpr int kPageMargin = 2 * kGrid;
inline constexpr int kFieldGap = kGrid / 2;  // a label above its field
inline constexpr int kCardPadding = 2 * kGrid;
inline constexpr int kBannerHeight = 44;
inline constexpr int kLowestView = 80, kTallestView = 280;  // of a melody's drawing
inline constexpr int kRadius = 6;
inline constexpr int kLeastLink = 56;    // of a button that gives way
inline constexpr int kMeasure = 720;     // the widest that something to read or to fill in becomes
inline constexpr int kWideWidth = 1240;  // from here on a page stands in more columns

// The main window when it opens and at its smallest.
inline constexpr int kFirstWidth = 1000, kFirstHeight = 700;
inline constexpr int kLeastWidth = 900, kLeastHeight = 600;

inline constexpr int kFollowMs = 30;    // between two looks at where a melody sounds
inline constexpr int kCopiedMs = 1500;  // how long the button says so
inline constexpr int kHoldMs = 600;     // as long as a phone takes a key for held

// The one scale of type, by app::Font, px: body, small, title, heading.
inline constexpr std::array<int, 4> kType = {14, 12, 18, 28};
// The display's type, px.
inline constexpr int kSmallestType = 16, kLargestType = 40;

using Rgb = std::uint32_t;  // 0xRRGGBB

// Where the system names no colours of its own: the window's ground, what stands on it, and text.
struct Grounds {
  Rgb window, card, text;
};
inline constexpr Grounds kLightGrounds = {.window = 0xF4F6F3, .card = 0xFFFFFF, .text = 0x1B211E};
inline constexpr Grounds kDarkGrounds = {.window = 0x1B1F1D, .card = 0x242926, .text = 0xE7EBE8};

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

// How strong the mixed colours are, 0 to 1.
struct Shares {
  double border, hover, muted, faint;  // of the text
  double wash;                         // of the accent
  double displayFaint, displayEdge;    // of the display's ink
};
inline constexpr Shares kLightShares = {0.2, 0.06, 0.72, 0.63, 0.13, 0.75, 0.4};
inline constexpr Shares kDarkShares = {0.24, 0.06, 0.74, 0.58, 0.18, 0.75, 0.4};
inline constexpr Shares kContrastShares = {1, 0, 1, 1, 0, 1, 1};

// `share` of `over` on `under`; three bytes in any order.
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

// From 1 (alike) to 21 (black on white); type needs kReadable.
inline double Contrast(Rgb a, Rgb b) {
  const auto [low, high] = std::minmax({Luminance(a), Luminance(b)});
  return (high + 0.05) / (low + 0.05);
}
inline constexpr double kReadable = 4.5;

// A contrast theme's colours are the user's own choice: nothing is mixed from them. `mark` and
// `onMark` are the colours of what is selected.
constexpr Tones ContrastTones(const Grounds& grounds, Rgb mark, Rgb onMark) {
  return {mark, onMark, grounds.text, grounds.text, grounds.window, grounds.text};
}
// Whether grounds are those of a contrast theme, where the system does not say.
inline bool IsStrong(const Grounds& grounds) {
  return std::min(Contrast(grounds.text, grounds.window), Contrast(grounds.text, grounds.card)) >
         20;
}

// All colours of a window, in the type of its toolkit.
template <typename Colour>
struct Colours {
  Colour window, card, text;
  Colour border, hover, muted, faint;  // faint: text of what is disabled
  Colour accent, accentText;
  Colour accentHover, accentWash;  // the wash is the ground of what is selected
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
