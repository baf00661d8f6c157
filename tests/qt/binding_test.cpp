#include <gtest/gtest.h>

#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QSlider>
#include <QTimer>
#include <QtTest>
#include <map>

#include "app/layout.h"
#include "shell/qt/text.h"
#include "shell/qt/theme/theme.h"
#include "shell/qt/widgets/phone_display.h"
#include "shell/qt/widgets/row_list.h"
#include "shell/qt/widgets/shape_view.h"
#include "shell/qt/widgets/web_pane.h"
#include "tests/qt/window_fixture.h"
#include "tests/support/binding_checks.h"

namespace tonadex::test::binding_test {

using app::ControlInfo;
using app::Event;
using shell::BoundControl;
using shell::FromQString;
using shell::RowList;

// The model bound to widgets, without the main window around them.
struct BoundForm : Screen {
  BoundForm() { form.Form_Load(); }

  template <typename Kind>
  Kind* As(const ControlInfo& info) {
    return qobject_cast<Kind*>(binding.Object(info.member));
  }
  void Draw() override { binding.Draw(); }
  void CopyIn() override { binding.CopyIn(); }
  bool Exists(const ControlInfo& info) override { return As<QWidget>(info) != nullptr; }
  bool Visible(const ControlInfo& info) override { return !As<QWidget>(info)->isHidden(); }
  bool Enabled(const ControlInfo& info) override { return As<QWidget>(info)->isEnabled(); }
  std::optional<std::string> Shown(const ControlInfo& info) override {
    if (info.look == app::Look::kPicture || info.look == app::Look::kBusyLine) return std::nullopt;
    if (auto* display = As<shell::PhoneDisplay>(info)) return display->Text();
    if (auto* label = As<QLabel>(info)) return FromQString(label->text());
    if (auto* button = As<QAbstractButton>(info)) return FromQString(button->text());
    if (auto* line = As<QLineEdit>(info)) return FromQString(line->text());
    if (auto* area = As<QPlainTextEdit>(info)) return FromQString(area->toPlainText());
    if (auto* box = As<QComboBox>(info)) return FromQString(box->currentText());
    if (auto* list = As<RowList>(info)) {
      return FromQString(list->currentIndex().data().toString());
    }
    return std::nullopt;
  }
  bool Type(const ControlInfo& info, const std::string& text) override {
    auto* line = As<QLineEdit>(info);
    auto* area = As<QPlainTextEdit>(info);
    if (line != nullptr && !line->isReadOnly()) {
      line->setText(shell::ToQString(text));
    } else if (area != nullptr && !area->isReadOnly()) {
      area->setPlainText(shell::ToQStringLines(text));
    } else if (auto* box = As<QComboBox>(info)) {
      box->setEditText(shell::ToQString(text));
    } else {
      return false;
    }
    return true;
  }
  bool Choose(const ControlInfo& info, int row) override {
    auto* list = As<RowList>(info);
    if (list != nullptr) {
      list->setCurrentIndex(list->model()->index(row, 0));
    }
    return list != nullptr;
  }
  void Do(Event event, const ControlInfo& info) override {
    if (auto* button = As<QAbstractButton>(info)) {
      button->click();
    } else if (auto* timer = As<QTimer>(info)) {
      const int before = dispatched;
      timer->start(0);
      EXPECT_TRUE(QTest::qWaitFor([&] { return dispatched > before; }));
      timer->stop();
    } else if (auto* shapes = As<shell::ShapeView>(info)) {
      emit shapes->Clicked();
    } else if (auto* pane = As<shell::WebPane>(info)) {
      emit pane->LeaveAttempted();
    } else if (event == Event::kActivate || event == Event::kEnter) {
      QTest::keyClick(As<QWidget>(info), Qt::Key_Return);
    } else if (auto* slider = As<QSlider>(info)) {
      slider->triggerAction(QSlider::SliderSingleStepAdd);
    } else if (!Choose(info, 1)) {
      Type(info, "otro");
    }
  }

  TestProgram test;
  app::Form1 form{test.program};
  QWidget parent;
  int dispatched = 0;
  shell::Binding binding{form, &parent, [this](const auto&) { ++dispatched; }};
};

TEST(Binding, DrawsReadsBackAndReachesEveryHandler) {
  BoundForm t;
  CheckBinding(t.test, t.form, t, t.dispatched);
}

// A control that the model shows is visible, with all its parent widgets.
TEST(Binding, EveryPageShowsItsControlsAndMarksItsButton) {
  TestWindow t;
  t.window.show();
  for (QAbstractButton* button : t.NavigationRow()) {
    button->click();
    SCOPED_TRACE(t.form.paginaactual);
    for (const BoundControl& bound : t.window.Bound().Controls()) {
      if (bound.widget != nullptr) {
        EXPECT_EQ(bound.widget->isVisible(), (t.form.*bound.info->member).Shows())
            << bound.info->name;
      }
    }
    for (const QAbstractButton* other : t.NavigationRow()) {
      const app::ControlInfo& info = *app::FindControl(other->objectName().toStdString());
      EXPECT_EQ(other->isChecked(), info.leadsTo == t.form.paginaactual) << info.name;
    }
    // Everything that takes the keyboard focus has an accessible name.
    for (const QWidget* widget : t.window.findChildren<QWidget*>()) {
      if (widget->isVisible() && (widget->focusPolicy() & Qt::TabFocus) &&
          widget->focusProxy() == nullptr && !widget->objectName().startsWith("qt_")) {
        EXPECT_FALSE(widget->accessibleName().isEmpty() &&
                     widget->property("text").toString().isEmpty())
            << widget->metaObject()->className() << " " << widget->objectName().toStdString();
      }
    }
  }
}

// On each page Tab goes from left to right and from top to bottom.
TEST(Binding, TabGoesInReadingOrder) {
  TestWindow t;
  for (const char* page : {"cmdbuscar", "cmdrepertorio", "cmdopciones", "cmdinicio"}) {
    SCOPED_TRACE(page);
    t.Click(page);
    std::map<const QObject*, std::size_t> place;
    for (const auto member :
         app::ControlsIn(app::WindowLayout(app::PageLayout(t.form.paginaactual)))) {
      place.emplace(t.window.Bound().Widget(member), place.size());
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
}

// Every page, with a conversion result, at each window and font size.
struct WindowSizeTest : testing::TestWithParam<std::tuple<int, int, double>> {
  WindowSizeTest() { SetType(std::get<2>(GetParam())); }
  ~WindowSizeTest() override { SetType(1); }
  void SetType(double factor) {
    QFont font = usual_;
    font.setPointSizeF(usual_.pointSizeF() * factor);
    QApplication::setFont(font);
    shell::ApplyTheme(*qApp, false);
  }
  const QFont usual_ = QApplication::font();
};

TEST_P(WindowSizeTest, NoWordIsCut) {
  const QSize size(std::get<0>(GetParam()), std::get<1>(GetParam()));
  TestWindow t;
  t.AddMelody("w.4", std::string(90, 'W') + ":d=4,o=5,b=100:c,e,g,p,c6");
  t.test.program.gPhoneModel = " Pulsaciones";
  t.window.resize(size);
  t.window.show();
  for (QAbstractButton* navigation : t.NavigationRow()) {
    navigation->click();
    if (t.form.paginaactual == app::kRepertoirePage) {
      t.SelectRow(0);
      t.Click("picconvertir");
    }
    QApplication::processEvents();
    EXPECT_EQ(t.window.size(), size);
    for (const QWidget* widget : t.window.findChildren<QWidget*>()) {
      const auto* label = qobject_cast<const QLabel*>(widget);
      const bool button = qobject_cast<const QAbstractButton*>(widget) != nullptr;
      EXPECT_TRUE(!widget->isVisible() ||
                  widget->mapTo(&t.window, QPoint(widget->width(), 0)).x() <= size.width())
          << t.form.paginaactual << widget->objectName().toStdString();
      if (widget->isVisible() && (button || (label != nullptr && !label->text().isEmpty()))) {
        const int needed = label != nullptr && label->wordWrap()
                               ? label->heightForWidth(widget->width())
                               : widget->minimumSizeHint().height();
        EXPECT_TRUE(widget->height() >= needed &&
                    widget->width() >= widget->minimumSizeHint().width())
            << t.form.paginaactual << widget->objectName().toStdString();
      }
    }
  }
}

INSTANTIATE_TEST_SUITE_P(Windows, WindowSizeTest,
                         testing::Values(std::tuple{900, 600, 1.0}, std::tuple{1000, 700, 1.0},
                                         std::tuple{1024, 768, 1.5}, std::tuple{1600, 1000, 1.0},
                                         std::tuple{1280, 800, 2.0}));

}  // namespace tonadex::test::binding_test
