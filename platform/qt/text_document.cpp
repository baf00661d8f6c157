#include "platform/qt/text_document.h"

#include <QFontDatabase>
#include <QGuiApplication>
#include <QScreen>
#include <QString>
#include <QTextBlockFormat>
#include <QTextCharFormat>
#include <QTextCursor>
#include <QTextDocument>
#include <QTextFrame>
#include <QTextOption>
#include <QTextTable>
#include <algorithm>

namespace tonadex::platform {
namespace {

constexpr double kPointsPerHalf = 0.5;
constexpr double kTwipsPerInch = 1440;
constexpr double kSingleLine = 240;
constexpr double kScreenLinePercent = 115;

QColor ToQColor(const rtf::Colour& colour) {
  return {colour.red, colour.green, colour.blue};
}

// Indexed by rtf::FontFamily, rtf::TabKind and rtf::Alignment.
constexpr QFont::StyleHint kHints[] = {QFont::AnyStyle, QFont::Serif, QFont::SansSerif,
                                       QFont::Monospace};
constexpr QTextOption::TabType kTabTypes[] = {QTextOption::LeftTab, QTextOption::CenterTab,
                                              QTextOption::RightTab, QTextOption::DelimiterTab};
constexpr Qt::Alignment kAlignments[] = {Qt::AlignLeft, Qt::AlignHCenter, Qt::AlignRight,
                                         Qt::AlignJustify};

template <typename Value, std::size_t count, typename Index>
Value At(const Value (&values)[count], Index index) {
  return values[static_cast<std::size_t>(index)];
}

bool Framed(const rtf::ParagraphFormat& format) {
  return format.shading.has_value() ||
         std::ranges::any_of(format.borders, [](const rtf::Border& b) { return b.width > 0; });
}

// Whether two successive paragraphs share a frame: all properties of the frame are equal.
bool SameFrame(const rtf::ParagraphFormat& a, const rtf::ParagraphFormat& b) {
  return a.borders == b.borders && a.shading == b.shading && a.left == b.left &&
         a.right == b.right && !b.pageBefore;
}

class Filler {
 public:
  Filler(QTextDocument& target, const rtf::Document& source, const TextDrawing& drawing)
      : source_(source),
        drawing_(drawing),
        dotsPerTwip_(DotsPerInch() / kTwipsPerInch * drawing.scale),
        cursor_(&target) {}

  void Fill() {
    cursor_.beginEditBlock();
    const auto& paragraphs = source_.paragraphs;
    for (std::size_t i = 0; i < paragraphs.size();) {
      i = Framed(paragraphs[i].format) ? FillFrame(i) : FillPlain(i);
    }
    cursor_.endEditBlock();
  }

 private:
  std::size_t FillPlain(std::size_t at);
  std::size_t FillFrame(std::size_t from);
  void FillRuns(const rtf::Paragraph& paragraph);
  QTextBlockFormat BlockFormatOf(const rtf::ParagraphFormat& format) const;
  void SetTabs(QTextBlockFormat& block, const rtf::ParagraphFormat& format) const;
  QTextTableFormat FrameFormatOf(const rtf::ParagraphFormat& first, int spaceAfter) const;
  int SpaceAfter(std::size_t at) const;
  void SetBorders(QTextTableCell cell, const rtf::ParagraphFormat& format) const;
  QTextCharFormat CharFormatOf(const rtf::RunFormat& format) const;
  void SetFont(QTextCharFormat& target, const rtf::RunFormat& format) const;
  double Pixels(int twips) const { return twips * dotsPerTwip_; }
  QColor Ink(const rtf::Colour& colour) const {
    return drawing_.ink ? drawing_.ink(ToQColor(colour)) : ToQColor(colour);
  }
  QColor Ground(const rtf::Colour& colour) const {
    return drawing_.ground ? drawing_.ground(ToQColor(colour)) : ToQColor(colour);
  }

  const rtf::Document& source_;
  const TextDrawing& drawing_;
  double dotsPerTwip_;
  QTextCursor cursor_;
  bool fresh_ = true;  // the cursor's block is still unused
};

std::size_t Filler::FillPlain(std::size_t at) {
  const rtf::Paragraph& paragraph = source_.paragraphs[at];
  const QTextBlockFormat block = BlockFormatOf(paragraph.format);
  const QTextCharFormat characters =
      CharFormatOf(paragraph.runs.empty() ? rtf::RunFormat{} : paragraph.runs.back().format);
  if (fresh_) {
    cursor_.setBlockFormat(block);
    cursor_.setBlockCharFormat(characters);
  } else {
    cursor_.insertBlock(block, characters);
  }
  fresh_ = false;
  FillRuns(paragraph);
  return at + 1;
}

// A table with one cell: the only kind of frame whose four borders can differ.
std::size_t Filler::FillFrame(std::size_t from) {
  const auto& paragraphs = source_.paragraphs;
  const rtf::ParagraphFormat& first = paragraphs[from].format;
  std::size_t end = from + 1;
  while (end < paragraphs.size() && SameFrame(first, paragraphs[end].format)) {
    ++end;
  }
  if (!fresh_) {
    cursor_.insertBlock(QTextBlockFormat{}, QTextCharFormat{});
  }
  QTextTable* frame = cursor_.insertTable(1, 1, FrameFormatOf(first, SpaceAfter(end - 1)));
  cursor_ = frame->cellAt(0, 0).firstCursorPosition();
  fresh_ = true;
  for (std::size_t i = from; i < end; ++i) {
    FillPlain(i);
    QTextBlockFormat block = cursor_.blockFormat();
    block.setLeftMargin(0);
    block.setRightMargin(0);
    block.setTopMargin(i == from ? 0 : block.topMargin());
    block.setBottomMargin(i + 1 == end ? 0 : block.bottomMargin());
    cursor_.setBlockFormat(block);
  }
  SetBorders(frame->cellAt(0, 0), first);  // last: inserting the first block would reset it
  cursor_ = frame->lastCursorPosition();
  cursor_.movePosition(QTextCursor::NextBlock);
  fresh_ = true;
  return end;
}

void Filler::FillRuns(const rtf::Paragraph& paragraph) {
  for (const rtf::Run& run : paragraph.runs) {
    cursor_.insertText(QString::fromStdU16String(run.text), CharFormatOf(run.format));
  }
}

QTextBlockFormat Filler::BlockFormatOf(const rtf::ParagraphFormat& format) const {
  QTextBlockFormat block;
  const bool ragged = drawing_.screen && format.alignment == rtf::Alignment::kJustify;
  block.setAlignment(ragged ? Qt::AlignLeft : At(kAlignments, format.alignment));
  block.setLeftMargin(Pixels(format.left));
  block.setRightMargin(Pixels(format.right));
  block.setTextIndent(Pixels(format.first));
  block.setTopMargin(Pixels(format.before));
  block.setBottomMargin(Pixels(format.after));
  block.setHeadingLevel(format.heading);
  block.setNonBreakableLines(false);
  if (format.lineFactor && format.lineHeight > 0) {
    block.setLineHeight(100 * format.lineHeight / kSingleLine,
                        QTextBlockFormat::ProportionalHeight);
  } else if (format.lineHeight != 0) {
    block.setLineHeight(Pixels(std::abs(format.lineHeight)), format.lineHeight < 0
                                                                 ? QTextBlockFormat::FixedHeight
                                                                 : QTextBlockFormat::MinimumHeight);
  } else if (drawing_.screen) {
    block.setLineHeight(kScreenLinePercent, QTextBlockFormat::ProportionalHeight);
  }
  if (format.pageBefore) {
    block.setPageBreakPolicy(QTextFormat::PageBreak_AlwaysBefore);
  }
  SetTabs(block, format);
  return block;
}

// With a hanging first line the left indent is a tab stop too. QTextDocument measures tabs from the
// start of the line, RTF from the left margin of the page; the conversion is right for the first
// line, because later lines rarely have tabs.
void Filler::SetTabs(QTextBlockFormat& block, const rtf::ParagraphFormat& format) const {
  QList<QTextOption::Tab> tabs;
  std::vector<rtf::Tab> stops = format.tabs;
  if (format.first < 0) {
    stops.insert(std::ranges::upper_bound(stops, format.left, {}, &rtf::Tab::position),
                 {format.left, rtf::TabKind::kLeft});
  }
  for (const rtf::Tab& tab : stops) {  // must be ascending: the first one after the text is used
    tabs.append(
        {Pixels(tab.position - format.left - format.first), At(kTabTypes, tab.kind), QChar(u',')});
  }
  block.setTabPositions(tabs);
}

// QTextDocument ignores the space before a paragraph that follows a frame, so it is added after the
// frame.
int Filler::SpaceAfter(std::size_t at) const {
  const auto& paragraphs = source_.paragraphs;
  const int after = paragraphs[at].format.after;
  return at + 1 < paragraphs.size() ? std::max(after, paragraphs[at + 1].format.before) : after;
}

QTextTableFormat Filler::FrameFormatOf(const rtf::ParagraphFormat& first, int spaceAfter) const {
  QTextTableFormat frame;
  frame.setBorder(0);
  frame.setBorderStyle(QTextFrameFormat::BorderStyle_None);
  frame.setCellSpacing(0);
  frame.setCellPadding(0);
  frame.setWidth(QTextLength(QTextLength::PercentageLength, 100));
  frame.setLeftMargin(Pixels(first.left));
  frame.setRightMargin(Pixels(first.right));
  frame.setTopMargin(Pixels(first.before));
  frame.setBottomMargin(Pixels(spaceAfter));
  if (first.pageBefore) {
    frame.setPageBreakPolicy(QTextFormat::PageBreak_AlwaysBefore);
  }
  return frame;
}

void Filler::SetBorders(QTextTableCell cell, const rtf::ParagraphFormat& format) const {
  constexpr int kShadedSpace = 80;  // twips between the edge of the shading and the text
  // Qt numbers the properties of the four sides top, bottom, left, right.
  constexpr int kSides[] = {0, 2, 1, 3};  // of the borders top, left, bottom, right
  QTextTableCellFormat shape;
  for (std::size_t i = 0; i < format.borders.size(); ++i) {
    const rtf::Border& border = format.borders[i];
    const int side = kSides[i];
    const int space = std::max(border.space, format.shading ? kShadedSpace : 0);
    shape.setProperty(QTextFormat::TableCellTopBorder + side, Pixels(border.width));
    shape.setProperty(QTextFormat::TableCellTopBorderBrush + side,
                      QBrush(Ink(border.colour.value_or(rtf::Colour{}))));
    shape.setProperty(QTextFormat::TableCellTopBorderStyle + side,
                      int{border.width > 0 ? QTextFrameFormat::BorderStyle_Solid
                                           : QTextFrameFormat::BorderStyle_None});
    shape.setProperty(QTextFormat::TableCellTopPadding + side, Pixels(space));
  }
  if (format.shading) {
    shape.setBackground(Ground(*format.shading));
  }
  cell.setFormat(shape);
}

QTextCharFormat Filler::CharFormatOf(const rtf::RunFormat& format) const {
  QTextCharFormat characters;
  SetFont(characters, format);
  characters.setFontPointSize(format.halfPoints * kPointsPerHalf * drawing_.scale);
  characters.setFontWeight(format.bold ? QFont::Bold : QFont::Normal);
  characters.setFontItalic(format.italic);
  characters.setFontUnderline(format.underline);
  characters.setFontStrikeOut(format.strike);
  if (format.script != rtf::Script::kNormal) {
    characters.setVerticalAlignment(format.script == rtf::Script::kSuper
                                        ? QTextCharFormat::AlignSuperScript
                                        : QTextCharFormat::AlignSubScript);
  }
  if (format.colour) {
    characters.setForeground(Ink(*format.colour));
  }
  if (format.ground) {
    characters.setBackground(Ground(*format.ground));
  }
  return characters;
}

void Filler::SetFont(QTextCharFormat& target, const rtf::RunFormat& format) const {
  auto font = source_.fonts.find(format.font >= 0 ? format.font : source_.defaultFont);
  if (font == source_.fonts.end()) {
    font = source_.fonts.find(source_.defaultFont);
  }
  const rtf::Font chosen = font == source_.fonts.end() ? rtf::Font{} : font->second;
  if (!drawing_.screen) {
    if (!chosen.name.empty()) {
      target.setFontFamilies({QString::fromStdU16String(chosen.name)});
    }
    target.setFontStyleHint(At(kHints, chosen.family));
  } else if (chosen.family == rtf::FontFamily::kFixed) {
    target.setFontFamilies(QFontDatabase::systemFont(QFontDatabase::FixedFont).families());
    target.setFontFixedPitch(true);
  }
}

}  // namespace

double DotsPerInch() {
  constexpr double kWithoutScreen = 96;
  const QScreen* screen = QGuiApplication::primaryScreen();
  return screen == nullptr ? kWithoutScreen : screen->logicalDotsPerInchY();
}

void FillTextDocument(QTextDocument& target, const rtf::Document& source,
                      const TextDrawing& drawing) {
  target.setUndoRedoEnabled(false);
  target.clear();
  Filler(target, source, drawing).Fill();
}

}  // namespace tonadex::platform
