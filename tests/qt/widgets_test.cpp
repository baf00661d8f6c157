#include <gtest/gtest.h>

#include <QAbstractTextDocumentLayout>
#include <QClipboard>
#include <QMimeData>
#include <QTextBlock>
#include <QtTest>

#include "app/result_groups.h"
#include "shell/qt/text.h"
#include "shell/qt/widgets/phone_display.h"
#include "shell/qt/widgets/row_list.h"

namespace tonadex::test {
namespace {

using shell::DisplayGroup;
using shell::PhoneDisplay;

std::vector<DisplayGroup> Groups(const std::string& text) {
  std::vector<DisplayGroup> groups;
  for (const app::ResultGroup& group : app::ResultGroups(text)) {
    groups.push_back({shell::ToQString(group.text), static_cast<int>(group.heldFrom),
                      static_cast<int>(group.heldTo)});
  }
  return groups;
}

void Show(PhoneDisplay& display, const std::string& text, bool counted = false) {
  display.resize(300, 200);
  display.SetResult(shell::ToQString(text), Groups(text), counted);
  display.show();
}

// The lines as they are drawn, without what only allows or forbids breaks.
QStringList Lines(const PhoneDisplay& display) {
  QStringList lines;
  for (QTextBlock block = display.document()->firstBlock(); block.isValid(); block = block.next()) {
    display.document()->documentLayout()->blockBoundingRect(block);  // lays it out
    for (int i = 0; i < block.layout()->lineCount(); ++i) {
      const QTextLine line = block.layout()->lineAt(i);
      lines
          << block.text().mid(line.textStart(), line.textLength()).remove(QChar(0x200B)).trimmed();
    }
  }
  return lines;
}

TEST(PhoneDisplay, NoGroupIsTornAndCopyingGivesTheText) {
  for (const std::string text : {"18 3 (5)9 08 68# 5 3 199 188* 3 59 08 68 5 3 199 188** ",
                                 "Vals:d=4,o=5,b=160:e6,8b,8c6,16d6,e.,8p,c6,8d#6,b,a,g,e,c",
                                 "NAME=x\r\nTEMPO=100\r\nMc4\r\n\r\nMD#8.\r\n", "   ", ""}) {
    for (const int pixels : {16, 24, 40}) {
      PhoneDisplay display;
      display.SetPixelSize(pixels);
      Show(display, text);
      const QString lines = Lines(display).join('\n');
      for (const DisplayGroup& group : Groups(text)) {
        EXPECT_TRUE(lines.contains(QString(group.text).replace(' ', QChar(0xA0))))
            << group.text.toStdString() << " in\n"
            << lines.toStdString();
      }
      QApplication::clipboard()->clear();
      display.selectAll();
      display.copy();
      EXPECT_EQ(QApplication::clipboard()->text(), shell::ToQStringLines(text));
    }
  }
}

TEST(PhoneDisplay, APartOfTheTextIsCopiedAsItStands) {
  PhoneDisplay display;
  Show(display, "a:d=4,o=5,b=100:c,d,e");
  QTextCursor cursor = display.textCursor();
  cursor.setPosition(0);
  cursor.setPosition(static_cast<int>(display.toPlainText().indexOf('b')) + 2,
                     QTextCursor::KeepAnchor);
  display.setTextCursor(cursor);
  display.copy();
  EXPECT_EQ(QApplication::clipboard()->text(), "a:d=4,o=5,b=");
}

TEST(PhoneDisplay, ArrowKeysMarkGroupByGroup) {
  PhoneDisplay display;
  Show(display, "18 (5)9 08", true);
  EXPECT_EQ(display.MarkedGroup(), -1);
  const auto press = [&display](Qt::Key key) {
    QTest::keyClick(&display, key);
    return display.MarkedGroup();
  };
  EXPECT_EQ(press(Qt::Key_Right), 0);
  EXPECT_EQ(press(Qt::Key_Right), 1);
  EXPECT_EQ(press(Qt::Key_Right), 2);
  EXPECT_EQ(press(Qt::Key_Right), 2);
  EXPECT_EQ(press(Qt::Key_Left), 1);
  EXPECT_EQ(press(Qt::Key_Home), 0);
}

TEST(PhoneDisplay, HeldKeysAloneAreHeavier) {
  PhoneDisplay display;
  Show(display, "18 (5)9 08", true);
  QString heavy;
  for (int i = 0; i < display.toPlainText().size(); ++i) {
    QTextCursor at(display.document());
    at.setPosition(i + 1);
    if (at.charFormat().fontWeight() > QFont::Bold) {
      heavy += display.toPlainText()[i];
    }
  }
  EXPECT_EQ(heavy, "(5)");
}

TEST(PhoneDisplay, FillsItsPlaceUntilSomeoneChoosesASize) {
  PhoneDisplay display;
  display.resize(500, 200);
  Show(display, "1 2 3 ", true);
  const int alone = display.PixelSize();
  std::string melody;
  for (int note = 0; note < 200; ++note) {
    melody += "288** ";
  }
  Show(display, melody, true);
  EXPECT_LT(display.PixelSize(), alone);
  display.resize(1600, 900);
  EXPECT_EQ(display.PixelSize(), alone);
  display.SetPixelSize(18);
  display.resize(500, 200);
  Show(display, "1 2 3 ", true);
  EXPECT_EQ(display.PixelSize(), 18);
}

TEST(PhoneDisplay, CountedGroupsLeaveRoomForTheirNumbers) {
  PhoneDisplay plain, counted;
  Show(plain, "18 3 59");
  Show(counted, "18 3 59", true);
  EXPECT_LT(counted.viewport()->width(), plain.viewport()->width());
}

TEST(RowList, ShowsTenThousandRowsAtOnce) {
  app::Control control;
  control.AddRow(std::string(1 << 20, '\x01'));  // the first line of a file that is no melody
  for (int i = 0; i < 10'000; ++i) {
    control.AddRow("melodía" + std::to_string(i), i);
  }
  shell::RowList list;
  list.resize(280, 500);
  list.show();
  QElapsedTimer timer;
  timer.start();
  list.SetControl(control);
  list.grab();
  EXPECT_LT(timer.elapsed(), 500);
  EXPECT_EQ(list.SelectedRow(), -1);
}

// The first row of a list gives all of them their height.
TEST(RowList, ARowOfAnyCharactersStaysInItsPlace) {
  app::Control plain;
  plain.rows = {{"uno"}, {"dos"}, {"tres"}};
  for (const std::string& text :
       {std::string("a\nb\r\nc\n\nd"), std::string("a\tb\x01\x0B\x0C\x85 (x\ny)"),
        std::string("a\0b", 3), std::string(5000, 'W'), std::string(400, '\n') + "x"}) {
    app::Control odd;
    odd.rows = {{text}, {"dos"}, {"tres"}};
    shell::RowList as, is;
    as.SetControl(plain);
    is.SetControl(odd);
    QImage pictures[2];
    for (shell::RowList* list : {&as, &is}) {
      list->resize(200, 150);
      QImage& picture = pictures[list == &is];
      picture = list->grab().toImage();
      const QRect first = list->visualRect(list->model()->index(0, 0));
      picture = picture.copy(0, first.bottom() + 2, picture.width(), picture.height());
    }
    EXPECT_EQ(pictures[0], pictures[1]) << text.substr(0, 20);
    EXPECT_EQ(is.Rows()[0].text, text);
  }
}

TEST(Text, EveryByteComesBack) {
  std::string all;
  for (int byte = 0; byte < 256; ++byte) {
    all += static_cast<char>(byte);
  }
  EXPECT_EQ(shell::FromQString(shell::ToQString(all)), all);
  EXPECT_EQ(shell::FromQString(QStringLiteral("€日𝄞")), "\x80??");
}

}  // namespace
}  // namespace tonadex::test
