#include "platform/qt/text_document.h"

#include <gtest/gtest.h>

#include <QTextBlock>
#include <QTextDocument>
#include <QTextTable>

#include "rtf/rtf_reader.h"

namespace tonadex::platform::text_document_test {

constexpr std::string_view kSource =
    R"({\rtf1\deff0{\fonttbl{\f0\fswiss Uno;}{\f1\fmodern Dos;}}{\colortbl;\red9\green99\blue199;})"
    R"(\pard\s1\qc\li720\ri300\fi-360\tx540\tx1440\sb240\sa120 T\'edtulo\par)"
    R"(\pard\qj\fs20 a{\b\i\ul\cf1\f1\fs30 b}{\super 2}\line c\par)"
    R"(\pard\li360\box\brdrs\brdrw20\cbpat1 d\par e\par\pard\sb400 f\par})";

double Twips(double dots) {
  return std::round(dots * 1440 / DotsPerInch());
}

QTextCharFormat FormatAt(const QTextDocument& document, QChar character) {
  QTextCursor cursor = document.find(character);
  return cursor.charFormat();
}

TEST(FillTextDocument, OnPaper) {
  QTextDocument document;
  FillTextDocument(document, rtf::ReadRtf("{\\rtf1 x\\par}"));
  FillTextDocument(document, rtf::ReadRtf(kSource));  // replaces the first content
  const QTextBlock title = document.firstBlock();
  EXPECT_EQ(title.text(), QString("Título"));
  const QTextBlockFormat format = title.blockFormat();
  EXPECT_EQ(format.headingLevel(), 1);
  EXPECT_EQ(format.alignment(), Qt::AlignHCenter);
  EXPECT_EQ((std::array{Twips(format.leftMargin()), Twips(format.rightMargin()),
                        Twips(format.textIndent()), Twips(format.topMargin()),
                        Twips(format.bottomMargin())}),
            (std::array{720.0, 300.0, -360.0, 240.0, 120.0}));
  // Tab stops count from the start of the line; the hanging indent is one of them.
  ASSERT_EQ(format.tabPositions().size(), 3);
  EXPECT_EQ(Twips(format.tabPositions()[0].position), 180);
  EXPECT_EQ(Twips(format.tabPositions()[1].position), 360);
  EXPECT_EQ(Twips(format.tabPositions()[2].position), 1080);
  const QTextBlock second = title.next();
  EXPECT_EQ(second.text(), QString("ab2\u2028c"));
  EXPECT_EQ(second.blockFormat().alignment(), Qt::AlignJustify);
  EXPECT_EQ(FormatAt(document, u'a').fontFamilies().toStringList(), QStringList{"Uno"});
  EXPECT_EQ(FormatAt(document, u'b').fontStyleHint(), QFont::Monospace);
  EXPECT_EQ(FormatAt(document, u'2').verticalAlignment(), QTextCharFormat::AlignSuperScript);
}

TEST(FillTextDocument, NeighboursShareAFrame) {
  QTextDocument document;
  FillTextDocument(document, rtf::ReadRtf(kSource));
  ASSERT_EQ(document.rootFrame()->childFrames().size(), 1);
  const auto& frame = dynamic_cast<QTextTable&>(*document.rootFrame()->childFrames().front());
  const QTextTableCell cell = frame.cellAt(0, 0);
  EXPECT_EQ(cell.firstCursorPosition().block().text(), QString("d"));
  EXPECT_EQ(cell.lastCursorPosition().block().text(), QString("e"));
  const QTextTableCellFormat shape = cell.format().toTableCellFormat();
  EXPECT_EQ(shape.background().color(), QColor(9, 99, 199));
  EXPECT_EQ(Twips(shape.leftBorder()), 20);
  EXPECT_EQ(Twips(frame.format().leftMargin()), 360);
  // The layout would drop the space before "f" after a frame.
  EXPECT_EQ(Twips(frame.format().bottomMargin()), 400);
  EXPECT_EQ(document.lastBlock().text(), QString("f"));
  FillTextDocument(document, rtf::ReadRtf("{\\rtf1\\box\\brdrs a\\par\\pagebb b\\par}"));
  EXPECT_EQ(document.rootFrame()->childFrames().size(), 2) << "a new page, a new frame";
}

TEST(FillTextDocument, OnTheScreen) {
  QTextDocument document;
  TextDrawing drawing{.scale = 2, .screen = true, .ink = {}, .ground = {}};
  drawing.ink = [](const QColor& ink) { return ink.lighter(); };
  drawing.ground = [](const QColor&) { return QColor(Qt::black); };
  FillTextDocument(document, rtf::ReadRtf(kSource), drawing);
  EXPECT_EQ(Twips(document.firstBlock().blockFormat().leftMargin()), 1440);
  EXPECT_EQ(document.firstBlock().next().blockFormat().alignment(), Qt::AlignLeft);
  EXPECT_EQ(FormatAt(document, u'a').fontPointSize(), 20);
  EXPECT_TRUE(FormatAt(document, u'a').fontFamilies().toStringList().isEmpty());
  EXPECT_EQ(FormatAt(document, u'b').foreground().color(), QColor(9, 99, 199).lighter());
}

}  // namespace tonadex::platform::text_document_test
