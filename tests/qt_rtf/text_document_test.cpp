#include "shell/qt/rtf/text_document.h"

#include <gtest/gtest.h>

#include <QTextBlock>
#include <QTextDocument>
#include <QTextTable>

#include "shell/qt/rtf/rtf_reader.h"

namespace tonadex::shell::rtf {
namespace {

constexpr std::string_view kSource =
    R"({\rtf1\deff0{\fonttbl{\f0\fswiss Uno;}{\f1\fmodern Dos;}}{\colortbl;\red9\green99\blue199;})"
    R"(\pard\s1\qc\li720\fi-360\tx1440\sb240\sa120 T\'edtulo\par)"
    R"(\pard\qj\fs20 a{\b\i\ul\cf1\f1\fs30 b}{\super 2}\line c\par)"
    R"(\pard\li360\box\brdrs\brdrw20\cbpat1 d\par e\par\pard\sb400 f\par})";

double Twips(double dots) {
  return std::round(dots * 1440 / DotsPerInch());
}

QTextCharFormat FormatAt(const QTextDocument& document, QChar character) {
  QTextCursor cursor = document.find(character);
  return cursor.charFormat();
}

TEST(FillTextDocument, ParagraphFormats) {
  QTextDocument document;
  FillTextDocument(document, ReadRtf(kSource));
  const QTextBlock title = document.firstBlock();
  EXPECT_EQ(title.text(), QString("Título"));
  const QTextBlockFormat format = title.blockFormat();
  EXPECT_EQ(format.headingLevel(), 1);
  EXPECT_EQ(format.alignment(), Qt::AlignHCenter);
  EXPECT_EQ((std::array{Twips(format.leftMargin()), Twips(format.textIndent()),
                        Twips(format.topMargin()), Twips(format.bottomMargin())}),
            (std::array{720.0, -360.0, 240.0, 120.0}));
  // Stops count from the start of the line: the hanging indent's own, then the one asked for.
  ASSERT_EQ(format.tabPositions().size(), 2);
  EXPECT_EQ(Twips(format.tabPositions()[0].position), 360);
  EXPECT_EQ(Twips(format.tabPositions()[1].position), 1080);
  const QTextBlock second = title.next();
  EXPECT_EQ(second.text(), QString("ab2\u2028c"));
  EXPECT_EQ(second.blockFormat().alignment(), Qt::AlignJustify);
}

TEST(FillTextDocument, CharacterFormats) {
  QTextDocument document;
  FillTextDocument(document, ReadRtf(kSource));
  const QTextCharFormat plain = FormatAt(document, u'a');
  EXPECT_EQ(plain.fontFamilies().toStringList(), QStringList{"Uno"});
  EXPECT_EQ(plain.fontPointSize(), 10);
  EXPECT_EQ(plain.fontWeight(), QFont::Normal);
  const QTextCharFormat rich = FormatAt(document, u'b');
  EXPECT_EQ(rich.fontFamilies().toStringList(), QStringList{"Dos"});
  EXPECT_EQ(rich.fontStyleHint(), QFont::Monospace);
  EXPECT_EQ(rich.fontPointSize(), 15);
  EXPECT_TRUE(rich.fontWeight() == QFont::Bold && rich.fontItalic() && rich.fontUnderline());
  EXPECT_EQ(rich.foreground().color(), QColor(9, 99, 199));
  EXPECT_EQ(FormatAt(document, u'2').verticalAlignment(), QTextCharFormat::AlignSuperScript);
}

TEST(FillTextDocument, NeighboursShareAFrame) {
  QTextDocument document;
  FillTextDocument(document, ReadRtf(kSource));
  ASSERT_EQ(document.rootFrame()->childFrames().size(), 1);
  const auto& frame = dynamic_cast<QTextTable&>(*document.rootFrame()->childFrames().front());
  const QTextTableCell cell = frame.cellAt(0, 0);
  EXPECT_EQ(cell.firstCursorPosition().block().text(), QString("d"));
  EXPECT_EQ(cell.lastCursorPosition().block().text(), QString("e"));
  const QTextTableCellFormat shape = cell.format().toTableCellFormat();
  EXPECT_EQ(shape.background().color(), QColor(9, 99, 199));
  EXPECT_EQ(Twips(shape.leftBorder()), 20);
  EXPECT_EQ(Twips(frame.format().leftMargin()), 360);
  // The space before "f": the layout would drop it behind a frame.
  EXPECT_EQ(Twips(frame.format().bottomMargin()), 400);
  EXPECT_EQ(document.lastBlock().text(), QString("f"));
}

TEST(FillTextDocument, OnTheScreen) {
  QTextDocument document;
  Drawing drawing{.scale = 2, .screen = true, .ink = {}, .ground = {}};
  drawing.ink = [](const QColor& ink) { return ink.lighter(); };
  drawing.ground = [](const QColor&) { return QColor(Qt::black); };
  FillTextDocument(document, ReadRtf(kSource), drawing);
  EXPECT_EQ(Twips(document.firstBlock().blockFormat().leftMargin()), 1440);
  EXPECT_EQ(document.firstBlock().next().blockFormat().alignment(), Qt::AlignLeft);
  EXPECT_EQ(FormatAt(document, u'a').fontPointSize(), 20);
  EXPECT_TRUE(FormatAt(document, u'a').fontFamilies().toStringList().isEmpty());
  EXPECT_EQ(FormatAt(document, u'b').foreground().color(), QColor(9, 99, 199).lighter());
}

TEST(FillTextDocument, StartsAnew) {
  QTextDocument document;
  FillTextDocument(document, ReadRtf(kSource));
  FillTextDocument(document, ReadRtf(R"({\rtf1 uno\par dos\par})"));
  EXPECT_EQ(document.toPlainText(), QString("uno\ndos"));
}

}  // namespace
}  // namespace tonadex::shell::rtf
