#include "shell/qt/help/help_window.h"

#include <gtest/gtest.h>

#include <QApplication>
#include <QLabel>
#include <QLineEdit>
#include <QScrollBar>
#include <QTest>
#include <QTextBrowser>
#include <QToolButton>
#include <QTreeWidget>

#include "shell/qt/help/paper_colours.h"
#include "tests/support/temp_folder.h"

namespace tonadex::shell::help_window_test {

// Two chapters of two sections each; every section fills a page.
std::string Manual() {
  std::string source = "{\\rtf1";
  for (const char* chapter : {"Uno", "Dos"}) {
    source += std::string("\\pard\\s1\\fs32 Cap\\'edtulo ") + chapter + "\\par";
    for (const char* section : {"A", "B"}) {
      source += std::string("\\pard\\s2\\fs28 Secci\\'f3n ") + section + " de " + chapter + "\\par";
      for (int line = 0; line < 60; ++line) {
        source += "\\pard\\fs22 Una l\\'ednea del texto.\\par";
      }
    }
  }
  return source + "\\pard Pulsaci\\'d3N y \\'d1and\\'fa\\par}";
}

struct HelpWindowTest : testing::Test {
  HelpWindowTest() {
    folder.Write("TONADEX.HLP", Manual());
    window.Open(folder / "TONADEX.HLP");
    QApplication::processEvents();
  }

  template <typename Widget>
  Widget& Get(const char* name) {
    return *window.findChild<Widget*>(name);
  }
  QString Hits(const QString& wanted) {
    Get<QLineEdit>("helpSearch").setText(wanted);
    return Get<QLabel>("helpHits").text();
  }
  QString Marked() {
    return Get<QTextBrowser>("helpText").extraSelections().last().cursor.selectedText();
  }
  QString Chapter() { return Get<QTreeWidget>("helpContents").currentItem()->text(0); }
  void Choose(const char* title) {
    auto& contents = Get<QTreeWidget>("helpContents");
    contents.setCurrentItem(contents.findItems(title, Qt::MatchExactly | Qt::MatchRecursive)[0]);
  }

  test::TempFolder folder;
  HelpWindow window;
};

QStringList Outline(const QTreeWidgetItem& item) {
  QStringList lines = {item.text(0)};
  for (int i = 0; i < item.childCount(); ++i) {
    for (const QString& line : Outline(*item.child(i))) {
      lines += "  " + line;
    }
  }
  return lines;
}

TEST_F(HelpWindowTest, ContentsAreTheHeadings) {
  EXPECT_EQ(Outline(*Get<QTreeWidget>("helpContents").invisibleRootItem()).mid(1),
            (QStringList{"  Capítulo Uno", "    Sección A de Uno", "    Sección B de Uno",
                         "  Capítulo Dos", "    Sección A de Dos", "    Sección B de Dos"}));
}

// tests/app/help_book_test.cpp tests search, history and zoom; this checks that they move the real
// text and its highlighting.
TEST_F(HelpWindowTest, ShowsWhatTheBookDecides) {
  auto& text = Get<QTextBrowser>("helpText");
  Choose("Capítulo Dos");
  Choose("Sección B de Uno");
  Get<QToolButton>("helpBack").click();
  EXPECT_EQ(Chapter(), "Capítulo Dos");
  Get<QToolButton>("helpForward").click();
  EXPECT_EQ(Chapter(), "Sección B de Uno");

  EXPECT_EQ(Hits("pulsacion"), "1 de 1");
  EXPECT_EQ(Marked(), QString("PulsaciÓN"));
  Choose("Capítulo Dos");
  EXPECT_EQ(Hits("secciÓn"), "3 de 4") << "it goes on from the place that is shown";
  Get<QToolButton>("helpPrevious").click();
  EXPECT_EQ(Get<QLabel>("helpHits").text(), "2 de 4");
  EXPECT_EQ(text.extraSelections().size(), 5);
  EXPECT_EQ(Hits(""), "");
  EXPECT_TRUE(text.extraSelections().isEmpty());

  Choose("Sección B de Dos");
  const double before = text.document()->size().height();
  for (int i = 0; i < 20; ++i) {
    QTest::keyClick(&window, Qt::Key_Equal, Qt::ControlModifier);
  }
  EXPECT_GT(text.document()->size().height(), 1.5 * before);
  EXPECT_EQ(Chapter(), "Sección B de Dos");
  Get<QToolButton>("helpZoomReset").click();
  EXPECT_EQ(text.document()->size().height(), before);

  window.Open(folder / "nada.hlp");
  EXPECT_FALSE(Get<QTreeWidget>("helpContents").isVisible());
}

TEST(PaperColours, ReadableOnAnyGround) {
  for (const QColor& ground : {QColor("#ffffff"), QColor("#242926"), QColor("#000000")}) {
    for (const QColor& ink : {QColor("#000000"), QColor("#14532d"), QColor("#ffff00"),
                              QColor("#777777"), QColor("#ffffff")}) {
      EXPECT_GE(Contrast(ReadableInk(ink, ground), ground), 4.5)
          << ink.name().toStdString() << " on " << ground.name().toStdString();
    }
    const QColor tint = TintedGround("#dbe8d3", ground);
    EXPECT_LT(Contrast(tint, ground), 2) << tint.name().toStdString();
  }
  EXPECT_EQ(ReadableInk("#14532d", "#ffffff"), QColor("#14532d"));
  EXPECT_EQ(TintedGround("#dbe8d3", "#ffffff"), QColor("#dbe8d3"));
}

}  // namespace tonadex::shell::help_window_test
