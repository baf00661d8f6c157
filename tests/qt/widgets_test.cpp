#include <gtest/gtest.h>

#include <QClipboard>
#include <QScrollBar>
#include <QtTest>

#include "app/display_layout.h"
#include "shell/qt/text.h"
#include "shell/qt/widgets/phone_display.h"
#include "shell/qt/widgets/row_list.h"

namespace tonadex::test::widgets_test {

using shell::PhoneDisplay;

void Show(PhoneDisplay& display, const std::string& text, bool counted = false) {
  display.resize(300, 200);
  display.SetResult(text, app::ResultGroups(text), counted);
  display.show();
}

// The display wraps the text itself, so it never scrolls sideways; copying gives the unwrapped
// text.
TEST(PhoneDisplay, LinesFitAndCopyingGivesTheText) {
  for (const std::string text : {"18 3 (5)9 08 68# 5 3 199 188* 3 59 08 68 5 3 199 188** ",
                                 "Vals:d=4,o=5,b=160:e6,8b,8c6,16d6,e.,8p,c6,8d#6,b,a,g,e,c",
                                 "NAME=x\r\nTEMPO=100\r\nMc4\r\n\r\nMD#8.\r\n", "   ", ""}) {
    for (const int pixels : {16, 24, 40}) {
      PhoneDisplay display;
      display.SetPixelSize(pixels);
      Show(display, text, true);
      EXPECT_EQ(display.horizontalScrollBar()->maximum(), 0) << text;
      QApplication::clipboard()->clear();
      display.selectAll();
      display.copy();
      EXPECT_EQ(QApplication::clipboard()->text(), shell::ToQStringLines(text));
    }
  }
}

TEST(PhoneDisplay, ArrowKeysMarkGroupByGroup) {
  PhoneDisplay display;
  display.SetPixelSize(16);
  Show(display, "18 (5)9 08", true);
  for (const auto& [key, marked] :
       {std::pair{Qt::Key_Right, 0}, {Qt::Key_End, 2}, {Qt::Key_Left, 1}, {Qt::Key_Home, 0}}) {
    QTest::keyClick(&display, key);
    EXPECT_EQ(display.MarkedGroup(), marked);
  }
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
  Show(display, "18 (5)9 0", true);
  QTextCursor end(display.document());
  end.movePosition(QTextCursor::End);
  EXPECT_EQ(end.charFormat(), QTextCharFormat());  // not the format of the group number before it
}

// The height of all rows is that of the first one, whatever characters they contain.
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

TEST(Text, IsTheNearestThatTheCodePageHas) {
  EXPECT_EQ(shell::FromQString(QStringLiteral("€日𝄞♯’")), "\x80??#\x92");
}

}  // namespace tonadex::test::widgets_test
