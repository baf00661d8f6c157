#pragma once

#include <array>
#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <vector>

// A rich-text file as plain data, before layout. Lengths are twips (1/1440 inch), type sizes half
// points. The reader clamps every number to the bounds given with its field.
namespace tonadex::rtf {

inline constexpr int kMaxTwips = 31680;                  // 22 inches, wider than any paper
inline constexpr int kMaxHalfPoints = 800;               // 400 points
inline constexpr int kDefaultHalfPoints = 24;            // 12 points
inline constexpr std::size_t kMaxTabs = 32;              // per paragraph
inline constexpr std::size_t kMaxParagraphText = 16384;  // characters, a few pages

struct Colour {
  std::uint8_t red = 0;
  std::uint8_t green = 0;
  std::uint8_t blue = 0;

  friend bool operator==(const Colour&, const Colour&) = default;
};

enum class FontFamily : std::uint8_t { kAny, kSerif, kSans, kFixed };

struct Font {
  std::u16string name;
  FontFamily family = FontFamily::kAny;
};

enum class Script : std::uint8_t { kNormal, kSuper, kSub };

struct RunFormat {
  int font = -1;  // key of Document::fonts, -1: Document::defaultFont
  int halfPoints = kDefaultHalfPoints;
  bool bold = false;
  bool italic = false;
  bool underline = false;
  bool strike = false;
  bool hidden = false;  // only used by the reader, which omits hidden text
  Script script = Script::kNormal;
  std::optional<Colour> colour;  // empty: the default text colour
  std::optional<Colour> ground;

  friend bool operator==(const RunFormat&, const RunFormat&) = default;
};

// Text of one format. Contains tabs (U+0009) and line breaks within the paragraph (U+2028), but no
// other control character, no lone surrogate and no noncharacter.
struct Run {
  std::u16string text;
  RunFormat format;
};

enum class Alignment : std::uint8_t { kLeft, kCentre, kRight, kJustify };
enum class TabKind : std::uint8_t { kLeft, kCentre, kRight, kDecimal };

struct Tab {
  int position = 0;  // from the left margin of the page, 0 to kMaxTwips
  TabKind kind = TabKind::kLeft;

  friend bool operator==(const Tab&, const Tab&) = default;
};

enum Side : std::uint8_t { kTop, kLeft, kBottom, kRight };

struct Border {
  int width = 0;  // 0: no border
  std::optional<Colour> colour;
  int space = 0;  // between line and text

  friend bool operator==(const Border&, const Border&) = default;
};

struct ParagraphFormat {
  Alignment alignment = Alignment::kLeft;
  int left = 0;  // indents, -kMaxTwips to kMaxTwips
  int right = 0;
  int first = 0;   // of the first line, added to `left`
  int before = 0;  // spacing, 0 to kMaxTwips
  int after = 0;
  int lineHeight = 0;       // 0: from the type size; positive: at least; negative: exactly
  bool lineFactor = false;  // lineHeight is in 240ths of a line instead
  bool keepTogether = false;
  bool keepWithNext = false;
  bool pageBefore = false;
  int style = 0;    // key of Document::styles
  int heading = 0;  // 1 to 6; 0: no heading. From \s1 to \s6 and \outlinelevel
  std::array<Border, 4> borders;
  std::optional<Colour> shading;
  std::vector<Tab> tabs;  // at most kMaxTabs, ascending

  friend bool operator==(const ParagraphFormat&, const ParagraphFormat&) = default;
};

// A paragraph of the file that is longer than kMaxParagraphText is split into several, because a
// layout processes a whole paragraph again for each page that it spans.
struct Paragraph {
  ParagraphFormat format;
  std::vector<Run> runs;
};

// The paper size and margins; by default A4 with margins of one inch.
struct Page {
  int width = 11906;
  int height = 16838;
  int left = 1440;
  int right = 1440;
  int top = 1440;
  int bottom = 1440;
};

struct Document {
  Page page;
  int defaultFont = 0;
  std::map<int, Font> fonts;
  std::vector<std::optional<Colour>> colours;  // an empty entry is the default colour
  std::map<int, std::u16string> styles;
  std::vector<Paragraph> paragraphs;
};

}  // namespace tonadex::rtf
