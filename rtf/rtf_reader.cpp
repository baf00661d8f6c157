#include "rtf/rtf_reader.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cstdint>
#include <utility>

#include "core/text.h"
#include "core/windows1252.h"

namespace tonadex::rtf {
namespace {

// Limits memory for malicious input: deeper groups do not save their formats.
constexpr std::size_t kMaxSavedGroups = 100'000;
constexpr int kMaxNumber = 1'000'000'000;
constexpr int kMaxHeading = 6;
constexpr std::string_view kRawBytes = "bin";  // followed by raw bytes, even braces
constexpr char16_t kTab = u'\t';
constexpr char16_t kLineBreak = u'\u2028';
constexpr char16_t kReplacement = u'\uFFFD';

constexpr bool IsLetter(char c) {
  return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z');
}
constexpr bool IsHigh(char16_t unit) {
  return unit >= 0xD800 && unit <= 0xDBFF;
}
constexpr bool IsLow(char16_t unit) {
  return unit >= 0xDC00 && unit <= 0xDFFF;
}

// Control characters, and the noncharacters that QTextDocument uses as markers.
constexpr bool IsNoText(char16_t unit) {
  return (unit < 0x20 && unit != kTab) || unit == 0x7F || unit == 0x2029 || unit >= 0xFFFE ||
         unit == 0xFFFC || (unit >= 0xFDD0 && unit <= 0xFDEF);
}

// The destination of a group's text.
enum class Destination : std::uint8_t { kBody, kFonts, kColours, kStyles };

// Appends the paragraph in pieces of at most kMaxParagraphText characters, cut after a blank if
// possible. Only the first piece has the first-line indent, the heading, the page break and the
// space before; only the last one has the space after.
void AppendPieces(const Paragraph& whole, std::vector<Paragraph>& pieces) {
  Paragraph piece{whole.format, {}};
  std::size_t room = kMaxParagraphText;
  for (const Run& run : whole.runs) {
    std::u16string_view rest = run.text;
    while (rest.size() > room) {
      std::size_t cut = rest.substr(0, room).rfind(u' ') + 1;
      if (cut == 0) {
        cut = room > 0 && IsLow(rest[room]) ? room - 1 : room;
      }
      if (cut > 0) {
        piece.runs.push_back({std::u16string(rest.substr(0, cut)), run.format});
      }
      piece.format.after = 0;
      pieces.push_back(std::exchange(piece, {whole.format, {}}));
      piece.format.before = piece.format.first = piece.format.heading = 0;
      piece.format.pageBefore = false;
      rest.remove_prefix(cut);
      room = kMaxParagraphText;
    }
    room -= rest.size();
    piece.runs.push_back({std::u16string(rest), run.format});
  }
  pieces.push_back(std::move(piece));
}

// What a closing brace restores.
struct GroupState {
  RunFormat run;
  ParagraphFormat paragraph;
  Destination destination = Destination::kBody;
  int fallback = 1;  // number of fallback characters after \u, for readers without Unicode
};

class Reader {
 public:
  explicit Reader(std::string_view source) : source_(source) {}

  Document Read();

  // Used by the control words.
  RunFormat& Characters() { return state_.run; }
  ParagraphFormat& Format() { return state_.paragraph; }
  Document& Result() { return document_; }
  void Skip() { skipped_ = 1; }
  void SkipBytes(int count);
  void Character(char16_t unit);
  void Unicode(int value);
  void SetFallback(int count) { state_.fallback = std::clamp(count, 0, kMaxNumber); }
  void EndParagraph();
  void BreakPage();
  void SetStyle(int style);
  void SetHeading(int level);
  void AddTab(int position);
  template <typename Change>
  void ChangeBorders(Change change);
  std::optional<Colour> ColourAt(int index) const;
  // One for each type of property; `value` is the control word's number.
  void Set(bool RunFormat::*flag, int value) { state_.run.*flag = value != 0; }
  void Set(bool ParagraphFormat::*flag, int value) { state_.paragraph.*flag = value != 0; }
  void Set(Script script, int value) { state_.run.script = value != 0 ? script : Script::kNormal; }
  void Set(Alignment alignment, int /*value*/) { state_.paragraph.alignment = alignment; }
  void Set(Destination destination, int /*value*/) { state_.destination = destination; }
  void Set(TabKind kind, int /*value*/) { tabKind_ = kind; }
  void Set(std::uint8_t borderSides, int /*value*/) { borderSides_ = borderSides; }
  void Set(FontFamily family, int value);
  void Set(std::uint8_t Colour::*part, int value);

 private:
  void OpenGroup();
  void CloseGroup();
  void Control();
  void Symbol(char symbol);
  void HexCharacter();
  void Word();
  std::optional<int> Number();
  void Byte(char byte);
  void Emit(char16_t unit);
  void EmitBody(char16_t unit);
  void Put(char16_t unit);

  std::string_view source_;
  std::size_t at_ = 0;
  bool finished_ = false;
  bool groupStart_ = false;   // only line ends since the brace
  std::size_t skipped_ = 0;   // open groups of a skipped destination, including itself
  std::size_t unsaved_ = 0;   // open groups beyond kMaxSavedGroups
  int pendingFallback_ = 0;   // characters still to be skipped after \u
  char16_t pendingHigh_ = 0;  // first half of a surrogate pair
  bool pageBreak_ = false;    // the next paragraph starts a page
  TabKind tabKind_ = TabKind::kLeft;
  std::uint8_t borderSides_ = 0;  // bits of the borders that the next control words describe
  std::optional<Colour> colour_;  // the entry of the colour table being read
  GroupState state_;
  std::vector<GroupState> saved_;
  Paragraph paragraph_;
  Document document_;
};

struct ControlWord {
  std::string_view name;
  int missing;  // value of a control word without a number
  void (*apply)(Reader& reader, int value);
};

int Spacing(int value) {
  return std::clamp(value, 0, kMaxTwips);
}

void NewParagraph(Reader& reader, int /*value*/) {
  reader.EndParagraph();
}
void NewPage(Reader& reader, int /*value*/) {
  reader.BreakPage();
}
void Ground(Reader& reader, int value) {
  reader.Characters().ground = reader.ColourAt(value);
}

template <auto kProperty>
void Set(Reader& reader, int value) {
  reader.Set(kProperty, value);
}
template <int ParagraphFormat::*kField>
void SetIndent(Reader& reader, int value) {
  reader.Format().*kField = std::clamp(value, -kMaxTwips, kMaxTwips);
}
template <int ParagraphFormat::*kField>
void SetSpacing(Reader& reader, int value) {
  reader.Format().*kField = Spacing(value);
}
template <int Page::*kField>
void SetPage(Reader& reader, int value) {
  int& extent = reader.Result().page.*kField;
  extent = value > 0 ? std::min(value, kMaxTwips) : extent;
}
template <int Page::*kField>
void SetMargin(Reader& reader, int value) {
  reader.Result().page.*kField = Spacing(value);
}
// A line style sets the default width, 15 twips.
void BorderLine(Reader& reader, int /*value*/) {
  reader.ChangeBorders([](Border& border) { border.width = std::max(border.width, 15); });
}
void BorderWidth(Reader& reader, int value) {
  reader.ChangeBorders([=](Border& border) { border.width = std::clamp(value, 0, 255); });
}
void NoBorder(Reader& reader, int /*value*/) {
  reader.ChangeBorders([](Border& border) { border = {}; });
}
void BorderSpace(Reader& reader, int value) {
  reader.ChangeBorders([=](Border& border) { border.space = Spacing(value); });
}
void BorderColour(Reader& reader, int value) {
  const auto colour = reader.ColourAt(value);
  reader.ChangeBorders([=](Border& border) { border.colour = colour; });
}
// \shading is in hundredths of a per cent of black.
void Shade(Reader& reader, int value) {
  const auto grey = static_cast<std::uint8_t>(255 - std::clamp(value, 0, 10000) * 255 / 10000);
  reader.Format().shading = Colour{grey, grey, grey};
}

constexpr std::uint8_t Bit(Side side) {
  return static_cast<std::uint8_t>(1u << side);
}
constexpr std::uint8_t kBox = 0x0F;

// Destinations whose text is skipped; sorted.
constexpr std::string_view kSkipped[] = {
    "annotation", "author",   "comment", "filetbl", "fldinst", "footer",  "footerf", "footerl",
    "footerr",    "footnote", "header",  "headerf", "headerl", "headerr", "info",    "listtable",
    "nonshppict", "object",   "pict",    "private", "revtbl",  "rxe",     "tc",      "xe"};

struct NamedCharacter {
  std::string_view name;
  char16_t unit;
};
// Control symbols that stand for a character, and the characters.
constexpr std::string_view kSymbols = "~-_\t";
constexpr std::u16string_view kSymbolUnits = u"\u00A0\u00AD\u2011\t";
// Control words that stand for a character; each can be the fallback after a \u.
constexpr NamedCharacter kNamedCharacters[] = {
    {"bullet", u'\u2022'}, {"emdash", u'\u2014'},  {"emspace", u'\u2003'},
    {"endash", u'\u2013'}, {"enspace", u'\u2002'}, {"ldblquote", u'\u201C'},
    {"lquote", u'\u2018'}, {"qmspace", u'\u2005'}, {"rdblquote", u'\u201D'},
    {"rquote", u'\u2019'}, {"tab", kTab}};

// Sorted by name for binary search.
constexpr auto kWords = std::to_array<ControlWord>({
    {"b", 1, Set<&RunFormat::bold>},
    {kRawBytes, 0, [](Reader& r, int v) { r.SkipBytes(v); }},
    {"blue", 0, Set<&Colour::blue>},
    {"box", 0, Set<kBox>},
    {"brdrb", 0, Set<Bit(kBottom)>},
    {"brdrcf", 0, BorderColour},
    {"brdrdash", 0, BorderLine},
    {"brdrdb", 0, BorderLine},
    {"brdrdot", 0, BorderLine},
    {"brdrhair", 0, BorderLine},
    {"brdrl", 0, Set<Bit(kLeft)>},
    {"brdrnone", 0, NoBorder},
    {"brdrr", 0, Set<Bit(kRight)>},
    {"brdrs", 0, BorderLine},
    {"brdrt", 0, Set<Bit(kTop)>},
    {"brdrth", 0, BorderLine},
    {"brdrw", 15, BorderWidth},
    {"brsp", 0, BorderSpace},
    {"cb", 0, Ground},
    {"cbpat", 0, [](Reader& r, int v) { r.Format().shading = r.ColourAt(v); }},
    {"cell", 0, [](Reader& r, int) { r.Character(kTab); }},
    {"cf", 0, [](Reader& r, int v) { r.Characters().colour = r.ColourAt(v); }},
    {"chcbpat", 0, Ground},
    {"colortbl", 0, Set<Destination::kColours>},
    {"deff", 0, [](Reader& r, int v) { r.Result().defaultFont = std::max(v, 0); }},
    {"f", 0, [](Reader& r, int v) { r.Characters().font = std::max(v, 0); }},
    {"fi", 0, SetIndent<&ParagraphFormat::first>},
    {"fmodern", 0, Set<FontFamily::kFixed>},
    {"fonttbl", 0, Set<Destination::kFonts>},
    {"froman", 0, Set<FontFamily::kSerif>},
    {"fs", kDefaultHalfPoints,
     [](Reader& r, int v) { r.Characters().halfPoints = std::clamp(v, 2, kMaxHalfPoints); }},
    {"fswiss", 0, Set<FontFamily::kSans>},
    {"green", 0, Set<&Colour::green>},
    {"highlight", 0, Ground},
    {"i", 1, Set<&RunFormat::italic>},
    {"keep", 1, Set<&ParagraphFormat::keepTogether>},
    {"keepn", 1, Set<&ParagraphFormat::keepWithNext>},
    {"li", 0, SetIndent<&ParagraphFormat::left>},
    {"lin", 0, SetIndent<&ParagraphFormat::left>},
    {"line", 0, [](Reader& r, int) { r.Character(kLineBreak); }},
    {"margb", 0, SetMargin<&Page::bottom>},
    {"margl", 0, SetMargin<&Page::left>},
    {"margr", 0, SetMargin<&Page::right>},
    {"margt", 0, SetMargin<&Page::top>},
    {"nosupersub", 0, [](Reader& r, int) { r.Characters().script = Script::kNormal; }},
    {"outlinelevel", 0, [](Reader& r, int v) { r.SetHeading(std::clamp(v, -1, kMaxHeading) + 1); }},
    {"page", 0, NewPage},
    {"pagebb", 1, Set<&ParagraphFormat::pageBefore>},
    {"paperh", 0, SetPage<&Page::height>},
    {"paperw", 0, SetPage<&Page::width>},
    {"par", 0, NewParagraph},
    {"pard", 0,
     [](Reader& r, int) {
       r.Format() = {};
       r.Set(TabKind::kLeft, 0);
       r.Set(std::uint8_t{0}, 0);
     }},
    {"plain", 0, [](Reader& r, int) { r.Characters() = {}; }},
    {"qc", 0, Set<Alignment::kCentre>},
    {"qj", 0, Set<Alignment::kJustify>},
    {"ql", 0, Set<Alignment::kLeft>},
    {"qr", 0, Set<Alignment::kRight>},
    {"red", 0, Set<&Colour::red>},
    {"ri", 0, SetIndent<&ParagraphFormat::right>},
    {"rin", 0, SetIndent<&ParagraphFormat::right>},
    {"row", 0, NewParagraph},
    {"s", 0, [](Reader& r, int v) { r.SetStyle(v); }},
    {"sa", 0, SetSpacing<&ParagraphFormat::after>},
    {"sb", 0, SetSpacing<&ParagraphFormat::before>},
    {"sect", 0, NewPage},
    {"shading", 0, Shade},
    {"sl", 0, SetIndent<&ParagraphFormat::lineHeight>},
    {"slmult", 0, Set<&ParagraphFormat::lineFactor>},
    {"strike", 1, Set<&RunFormat::strike>},
    {"stylesheet", 0, Set<Destination::kStyles>},
    {"sub", 1, Set<Script::kSub>},
    {"super", 1, Set<Script::kSuper>},
    {"tqc", 0, Set<TabKind::kCentre>},
    {"tqdec", 0, Set<TabKind::kDecimal>},
    {"tqr", 0, Set<TabKind::kRight>},
    {"tx", 0, [](Reader& r, int v) { r.AddTab(v); }},
    {"u", 0, [](Reader& r, int v) { r.Unicode(v); }},
    {"uc", 1, [](Reader& r, int v) { r.SetFallback(v); }},
    {"ul", 1, Set<&RunFormat::underline>},
    {"uld", 1, Set<&RunFormat::underline>},
    {"uldash", 1, Set<&RunFormat::underline>},
    {"uldb", 1, Set<&RunFormat::underline>},
    {"ulnone", 0, [](Reader& r, int) { r.Characters().underline = false; }},
    {"ulw", 1, Set<&RunFormat::underline>},
    {"v", 1, Set<&RunFormat::hidden>},
});

static_assert(std::ranges::is_sorted(kWords, {}, &ControlWord::name));

const ControlWord* FindWord(std::string_view name) {
  const auto found = std::ranges::lower_bound(kWords, name, {}, &ControlWord::name);
  return found != kWords.end() && found->name == name ? &*found : nullptr;
}

Document Reader::Read() {
  while (at_ < source_.size() && !finished_) {
    const char c = source_[at_++];
    switch (c) {
      case '{':
        OpenGroup();
        break;
      case '}':
        CloseGroup();
        break;
      case '\\':
        Control();
        break;
      case '\r':
      case '\n':
      case '\0':
        break;
      default:
        Byte(c);
    }
  }
  if (!paragraph_.runs.empty() || pendingHigh_ != 0) {
    EndParagraph();
  }
  return std::move(document_);
}

void Reader::OpenGroup() {
  groupStart_ = true;
  pendingFallback_ = 0;
  if (skipped_ > 0) {
    ++skipped_;
  } else if (saved_.size() < kMaxSavedGroups) {
    saved_.push_back(state_);
  } else {
    ++unsaved_;
  }
}

void Reader::CloseGroup() {
  groupStart_ = false;
  pendingFallback_ = 0;
  if (skipped_ > 1) {
    --skipped_;
    return;
  }
  skipped_ = 0;
  if (unsaved_ > 0) {
    --unsaved_;
  } else if (saved_.size() > 1) {
    state_ = std::move(saved_.back());
    saved_.pop_back();
  } else {
    finished_ = !saved_.empty();
  }
}

void Reader::Control() {
  if (at_ == source_.size()) {
    return;
  }
  if (IsLetter(source_[at_])) {
    groupStart_ = false;
    Word();
  } else {
    Symbol(source_[at_++]);
  }
}

void Reader::Symbol(char symbol) {
  if (symbol == '*' && groupStart_ && skipped_ == 0) {
    Skip();
  }
  groupStart_ = false;
  if (symbol == '\'') {
    HexCharacter();
  } else if (symbol == '\\' || symbol == '{' || symbol == '}') {
    Byte(symbol);
  } else if (symbol == '\r' || symbol == '\n') {
    EndParagraph();
  } else if (const std::size_t at = kSymbols.find(symbol); at != kSymbols.npos) {
    Character(kSymbolUnits[at]);
  }
}

void Reader::HexCharacter() {
  const char* const digits = source_.data() + at_;
  unsigned code = 0;
  if (source_.size() - at_ >= 2 &&
      std::from_chars(digits, digits + 2, code, 16).ptr == digits + 2) {
    at_ += 2;
    Byte(static_cast<char>(code));
  }
}

// A control word: letters, an optional number and an optional blank that ends it.
void Reader::Word() {
  const std::size_t start = at_;
  while (at_ < source_.size() && IsLetter(source_[at_])) {
    ++at_;
  }
  const std::string_view name = source_.substr(start, at_ - start);
  const std::optional<int> number = Number();
  if (at_ < source_.size() && source_[at_] == ' ') {
    ++at_;
  }
  if (skipped_ > 0 && name != kRawBytes) {
    return;
  }
  const auto* character = std::ranges::find(kNamedCharacters, name, &NamedCharacter::name);
  if (character != std::end(kNamedCharacters)) {
    Character(character->unit);
  } else if (const ControlWord* word = FindWord(name)) {
    pendingFallback_ = 0;
    word->apply(*this, number.value_or(word->missing));
  } else if (std::ranges::binary_search(kSkipped, name)) {
    pendingFallback_ = 0;
    Skip();
  }
}

std::optional<int> Reader::Number() {
  const bool negative =
      at_ + 1 < source_.size() && source_[at_] == '-' && core::IsDigit(source_[at_ + 1]);
  at_ += negative ? 1u : 0u;
  std::optional<int> number;
  for (; at_ < source_.size() && core::IsDigit(source_[at_]); ++at_) {
    const int digit = source_[at_] - '0';
    number = number.value_or(0) < kMaxNumber / 10 ? number.value_or(0) * 10 + digit : kMaxNumber;
  }
  return negative ? std::optional(-*number) : number;
}

void Reader::Byte(char byte) {
  groupStart_ = false;
  Character(static_cast<char16_t>(core::ToUnicode(static_cast<unsigned char>(byte))));
}

void Reader::Character(char16_t unit) {
  if (skipped_ > 0) {
    return;
  }
  if (pendingFallback_ > 0) {
    --pendingFallback_;
  } else {
    Emit(unit);
  }
}

void Reader::Unicode(int value) {
  Emit(static_cast<char16_t>(value & 0xFFFF));
  pendingFallback_ = state_.fallback;
}

void Reader::SkipBytes(int count) {
  at_ += std::min(source_.size() - at_, static_cast<std::size_t>(std::max(count, 0)));
}

void Reader::Emit(char16_t unit) {
  switch (state_.destination) {
    case Destination::kBody:
      EmitBody(unit);
      break;
    case Destination::kColours:
      if (unit == u';') {
        document_.colours.push_back(std::exchange(colour_, std::nullopt));
      }
      break;
    case Destination::kFonts:
      if (unit != u';') {
        document_.fonts[std::max(state_.run.font, 0)].name += unit;
      }
      break;
    case Destination::kStyles:
      if (unit != u';') {
        document_.styles[state_.paragraph.style] += unit;
      }
      break;
  }
}

// The halves of a surrogate pair may come separately; only complete pairs are appended.
void Reader::EmitBody(char16_t unit) {
  if (state_.run.hidden) {
    return;
  }
  const char16_t high = std::exchange(pendingHigh_, char16_t{0});
  if (high != 0 && IsLow(unit)) {
    Put(high);
    paragraph_.runs.back().text += unit;
    return;
  }
  if (high != 0) {
    Put(kReplacement);
  }
  if (IsHigh(unit)) {
    pendingHigh_ = unit;
  } else if (!IsNoText(unit)) {
    Put(IsLow(unit) ? kReplacement : unit);
  }
}

void Reader::Put(char16_t unit) {
  if (paragraph_.runs.empty() || paragraph_.runs.back().format != state_.run) {
    paragraph_.runs.push_back({{}, state_.run});
  }
  paragraph_.runs.back().text += unit;
}

void Reader::EndParagraph() {
  pendingFallback_ = 0;
  if (skipped_ > 0 || state_.destination != Destination::kBody) {
    return;
  }
  if (std::exchange(pendingHigh_, char16_t{0}) != 0) {
    Put(kReplacement);
  }
  paragraph_.format = state_.paragraph;
  paragraph_.format.pageBefore |= std::exchange(pageBreak_, false);
  AppendPieces(std::exchange(paragraph_, {}), document_.paragraphs);
}

void Reader::BreakPage() {
  if (!paragraph_.runs.empty()) {
    EndParagraph();
  }
  pageBreak_ = true;
}

void Reader::SetStyle(int style) {
  state_.paragraph.style = std::max(style, 0);
  SetHeading(style >= 1 && style <= kMaxHeading ? style : 0);
}

void Reader::SetHeading(int level) {
  state_.paragraph.heading = level >= 1 && level <= kMaxHeading ? level : 0;
}

void Reader::AddTab(int position) {
  auto& tabs = state_.paragraph.tabs;
  if (position >= 0 && position <= kMaxTwips && tabs.size() < kMaxTabs) {
    const Tab tab{position, tabKind_};
    tabs.insert(std::ranges::upper_bound(tabs, position, {}, &Tab::position), tab);
  }
  tabKind_ = TabKind::kLeft;
}

template <typename Change>
void Reader::ChangeBorders(Change change) {
  for (std::size_t side = 0; side < state_.paragraph.borders.size(); ++side) {
    if ((unsigned{borderSides_} >> side & 1u) != 0) {
      change(state_.paragraph.borders[side]);
    }
  }
}

void Reader::Set(std::uint8_t Colour::*part, int value) {
  if (state_.destination == Destination::kColours) {
    colour_ = colour_.value_or(Colour{});
    (*colour_).*part = static_cast<std::uint8_t>(std::clamp(value, 0, 255));
  }
}

std::optional<Colour> Reader::ColourAt(int index) const {
  if (index < 0 || static_cast<std::size_t>(index) >= document_.colours.size()) {
    return std::nullopt;
  }
  return document_.colours[static_cast<std::size_t>(index)];
}

void Reader::Set(FontFamily family, int /*value*/) {
  if (state_.destination == Destination::kFonts) {
    document_.fonts[std::max(state_.run.font, 0)].family = family;
  }
}

}  // namespace

bool LooksLikeRtf(std::string_view source) {
  return source.starts_with("{\\rtf");
}

Document ReadRtf(std::string_view source) {
  return Reader(source).Read();
}

std::u16string PlainText(const Document& document) {
  std::u16string text;
  for (const Paragraph& paragraph : document.paragraphs) {
    for (const Run& run : paragraph.runs) {
      text += run.text;
    }
    text += u'\n';
  }
  return text;
}

}  // namespace tonadex::rtf
