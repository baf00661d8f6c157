#include <gtest/gtest.h>

#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QTimer>
#include <map>
#include <set>

#include "shell/qt/text.h"
#include "shell/qt/theme/theme.h"
#include "shell/qt/widgets/phone_display.h"
#include "shell/qt/widgets/row_list.h"
#include "shell/qt/widgets/web_pane.h"
#include "tests/qt/window_fixture.h"

namespace tonadex::test {
namespace {

using app::Control;
using app::ControlKind;
using shell::BoundControl;
using shell::FromQString;
using shell::RowList;
using shell::ToQString;

// A text that a widget shows, whatever its class.
std::string Shown(QWidget* widget) {
  if (auto* label = qobject_cast<QLabel*>(widget)) return FromQString(label->text());
  if (auto* button = qobject_cast<QAbstractButton*>(widget)) return FromQString(button->text());
  if (auto* line = qobject_cast<QLineEdit*>(widget)) return FromQString(line->text());
  if (auto* display = qobject_cast<shell::PhoneDisplay*>(widget))
    return FromQString(display->Text());
  if (auto* area = qobject_cast<QPlainTextEdit*>(widget)) return FromQString(area->toPlainText());
  if (auto* list = qobject_cast<RowList*>(widget)) return list->Text();
  if (auto* box = qobject_cast<QComboBox*>(widget)) return FromQString(box->currentText());
  return "(no text)";
}

// What the user would do to change it; false where he cannot.
bool TypeInto(QWidget* widget, const QString& text) {
  if (auto* line = qobject_cast<QLineEdit*>(widget); line != nullptr && !line->isReadOnly()) {
    line->setText(text);
  } else if (auto* area = qobject_cast<QPlainTextEdit*>(widget);
             area != nullptr && !area->isReadOnly()) {
    area->setPlainText(text);
  } else if (auto* box = qobject_cast<QComboBox*>(widget)) {
    box->setEditText(text);
  } else {
    return false;
  }
  return true;
}

bool HasCaption(ControlKind kind) {
  return kind == ControlKind::kLabel || kind == ControlKind::kButton ||
         kind == ControlKind::kPictureButton;
}
bool HasRows(ControlKind kind) {
  return kind == ControlKind::kListBox || kind == ControlKind::kComboBox;
}

TEST(Binding, EveryControlIsDrawnAsItStandsAndReadBack) {
  TestWindow t;
  for (const BoundControl& bound : t.window.Bound().Controls()) {
    const std::string name(bound.info->name);
    SCOPED_TRACE(name);
    Control& control = t.form.*bound.info->member;
    if (bound.info->kind == ControlKind::kStorage) {
      EXPECT_EQ(bound.object, nullptr);
      continue;
    }
    ASSERT_NE(bound.object, nullptr);
    EXPECT_EQ(t.window.findChild<QObject*>(ToQString(bound.info->name)), bound.object);
    if (bound.info->kind == ControlKind::kTimer) {
      control.enabled = true;
      control.interval = 4321;
      t.window.Draw();
      EXPECT_TRUE(qobject_cast<QTimer*>(bound.object)->isActive());
      EXPECT_EQ(qobject_cast<QTimer*>(bound.object)->interval(), 4321);
      continue;
    }
    const std::string accented = FromQString(QStringLiteral("Canción ñ € «%1»").arg(name.size()));
    control.visible = true;
    control.enabled = false;
    if (HasCaption(bound.info->kind)) {
      control.caption = accented;
    } else if (HasRows(bound.info->kind)) {
      control.rows = {{"uno", 1}, {accented, 2}};
      control.Select(1);
      control.text = accented;
    } else if (bound.info->kind != ControlKind::kWebView) {
      control.text = accented;
    }
    t.window.Draw();
    EXPECT_FALSE(bound.widget->isHidden());
    EXPECT_FALSE(bound.widget->isEnabled());
    if (bound.info->kind != ControlKind::kWebView) {
      EXPECT_EQ(Shown(bound.widget), accented);
    }
    control.visible = false;
    control.enabled = true;
    t.window.Draw();
    EXPECT_TRUE(bound.widget->isHidden());
    EXPECT_TRUE(bound.widget->isEnabled());
    if (TypeInto(bound.widget, QStringLiteral("á\nb"))) {
      t.window.Run([] {});
      const bool lines = bound.info->kind == ControlKind::kTextArea;
      EXPECT_EQ(control.text, lines ? "\xE1\r\nb" : Shown(bound.widget));
    }
    if (auto* list = qobject_cast<RowList*>(bound.widget)) {
      list->setCurrentIndex(list->model()->index(0, 0));
      EXPECT_EQ(control.listIndex, 0);
    }
  }
}

TEST(Binding, ATextThatNoRowHoldsStaysAsItIs) {
  TestWindow t;
  t.test.program.gPhoneModel = "0";
  t.Click("cmdopciones");
  EXPECT_EQ(qobject_cast<RowList*>(t.Widget("cmbformatos"))->SelectedRow(), -1);
  EXPECT_EQ(t.form.cmbformatos.text, "0");
  t.window.show();
  t.Widget("cmbformatos")->setFocus();  // going past it is no choice
  t.Click("cmdbuscar");
  EXPECT_EQ(t.test.program.gPhoneModel, "0");
}

TEST(Binding, AChosenBrandAndModelAreSavedOnLeaving) {
  TestWindow t;
  t.Click("cmdopciones");
  auto* brands = qobject_cast<RowList*>(t.Widget("cmbmarcas"));
  auto* models = qobject_cast<RowList*>(t.Widget("cmbformatos"));
  brands->setCurrentIndex(brands->model()->index(1, 0));
  ASSERT_EQ(models->Rows().size(), 2U);
  models->setCurrentIndex(models->model()->index(1, 0));
  t.Click("cmdrepertorio");
  EXPECT_EQ(t.test.program.gPhoneModel, "2119,2135,2255,2235,3035");
}

TEST(Binding, EveryPageShowsItsControlsAndMarksItsButton) {
  TestWindow t;
  t.window.show();
  for (const app::NavigationInfo& info : app::NavigationRow()) {
    auto* button = qobject_cast<QAbstractButton*>(t.window.Bound().Widget(info.button));
    SCOPED_TRACE(button->objectName().toStdString());
    button->click();
    const auto page = app::PageControls(t.form.paginaactual);
    for (const BoundControl& bound : t.window.Bound().Controls()) {
      if (bound.widget == nullptr) {
        continue;
      }
      const bool onPage = std::find(page.begin(), page.end(), bound.info->member) != page.end();
      const bool shown = bound.widget->isVisible();
      EXPECT_EQ(shown, (t.form.*bound.info->member).visible) << bound.info->name;
      EXPECT_TRUE(shown || !onPage) << bound.info->name;
    }
    for (const app::NavigationInfo& other : app::NavigationRow()) {
      auto* mark = qobject_cast<QAbstractButton*>(t.window.Bound().Widget(other.button));
      EXPECT_EQ(mark->isChecked(), other.page != 0 && other.page == t.form.paginaactual);
    }
  }
}

// The names by which a screen reader, or a key with Alt, finds what can be used.
TEST(Binding, EveryWidgetOfEveryPageHasANameAndAMnemonicOfItsOwn) {
  TestWindow t;
  t.window.show();
  for (const app::NavigationInfo& info : app::NavigationRow()) {
    qobject_cast<QAbstractButton*>(t.window.Bound().Widget(info.button))->click();
    SCOPED_TRACE(t.form.paginaactual);
    std::map<QString, QString> mnemonics;
    for (QWidget* widget : t.window.findChildren<QWidget*>()) {
      if (!widget->isVisible()) {
        continue;
      }
      auto* button = qobject_cast<QAbstractButton*>(widget);
      auto* label = qobject_cast<QLabel*>(widget);
      const QString text = button != nullptr  ? button->text()
                           : label != nullptr ? label->text()
                                              : "";
      if ((widget->focusPolicy() & Qt::TabFocus) && widget->focusProxy() == nullptr &&
          !widget->objectName().startsWith("qt_")) {
        EXPECT_FALSE(widget->accessibleName().isEmpty() && text.isEmpty())
            << widget->metaObject()->className() << " " << widget->objectName().toStdString();
      }
      if (button != nullptr || (label != nullptr && label->buddy() != nullptr)) {
        const QString key = QKeySequence::mnemonic(text).toString();
        const bool fresh = key.isEmpty() || mnemonics.emplace(key, text).second;
        EXPECT_TRUE(fresh) << text.toStdString() << " and " << mnemonics[key].toStdString();
      }
    }
  }
}

// Left to right and down, page by page, in the order of the model's table.
TEST(Binding, TabGoesInReadingOrder) {
  TestWindow t;
  std::map<const QObject*, std::size_t> place;
  for (const BoundControl& bound : t.window.Bound().Controls()) {
    place.emplace(bound.object, place.size());
  }
  std::size_t last = 0;
  QWidget* const first = t.Widget("cmdinicio");
  for (QWidget* at = first->nextInFocusChain(); at != first; at = at->nextInFocusChain()) {
    if (const auto found = place.find(at);
        found != place.end() && (at->focusPolicy() & Qt::TabFocus)) {
      EXPECT_GT(found->second, last) << at->objectName().toStdString();
      last = found->second;
    }
  }
  EXPECT_GT(last, 0U);
}

struct Size {
  const char* name;
  int width, height;
  double type;
};
void PrintTo(const Size& size, std::ostream* os) {
  *os << size.name;
}

class WindowSizeTest : public testing::TestWithParam<Size> {
 protected:
  void SetUp() override {
    QFont larger = before_;
    larger.setPointSizeF(before_.pointSizeF() * GetParam().type);
    QApplication::setFont(larger);
    shell::ApplyTheme(*qApp, false);
  }
  void TearDown() override {
    QApplication::setFont(before_);
    shell::ApplyTheme(*qApp, false);
  }
  QFont before_ = QApplication::font();
};

TEST_P(WindowSizeTest, NoWordIsCut) {
  TestWindow t;
  t.AddMelody("vals.20", "Vals de las flores:d=4,o=5,b=100:c,e,g,p,c6");
  t.test.program.gPhoneModel = " Pulsaciones";
  t.window.resize(GetParam().width, GetParam().height);
  t.window.show();
  for (const app::NavigationInfo& info : app::NavigationRow()) {
    qobject_cast<QAbstractButton*>(t.window.Bound().Widget(info.button))->click();
    if (t.form.paginaactual == app::kRepertoirePage) {
      auto* list = qobject_cast<RowList*>(t.Widget("List1"));
      list->setCurrentIndex(list->model()->index(0, 0));
      t.Click("picconvertir");
    }
    QApplication::processEvents();
    EXPECT_EQ(t.window.size(), QSize(GetParam().width, GetParam().height));
    for (QWidget* widget : t.window.findChildren<QWidget*>()) {
      const auto* label = qobject_cast<QLabel*>(widget);
      const bool words = (label != nullptr && !label->text().isEmpty()) ||
                         qobject_cast<QAbstractButton*>(widget) != nullptr;
      if (!words || !widget->isVisible()) {
        continue;
      }
      const int needed = label != nullptr && label->wordWrap()
                             ? label->heightForWidth(widget->width())
                             : widget->minimumSizeHint().height();
      EXPECT_GE(widget->height(), needed)
          << t.form.paginaactual << widget->objectName().toStdString();
      EXPECT_GE(widget->width(), widget->minimumSizeHint().width())
          << t.form.paginaactual << widget->objectName().toStdString();
    }
  }
}

INSTANTIATE_TEST_SUITE_P(Windows, WindowSizeTest,
                         testing::Values(Size{"Least", 900, 600, 1}, Size{"First", 1000, 700, 1},
                                         Size{"LargeType", 1024, 768, 1.5},
                                         Size{"Large", 1600, 1000, 1}),
                         [](const auto& i) { return std::string{i.param.name}; });

}  // namespace
}  // namespace tonadex::test
