#include <gtest/gtest.h>

#include <QAccessible>
#include <QClipboard>
#include <QComboBox>
#include <QFileDialog>
#include <QLabel>
#include <QMenu>
#include <QMimeData>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QScrollArea>
#include <QScrollBar>
#include <QtTest>

#include "app/words.h"
#include "core/windows1252.h"
#include "shell/qt/text.h"
#include "shell/qt/theme/system_scheme.h"
#include "shell/qt/theme/theme.h"
#include "shell/qt/widgets/key_row.h"
#include "shell/qt/widgets/melody_view.h"
#include "shell/qt/widgets/phone_display.h"
#include "shell/qt/widgets/row_list.h"
#include "shell/qt/widgets/shape_view.h"
#include "shell/qt/widgets/waiting_line.h"
#include "tests/midi/smf_bytes.h"
#include "tests/qt/window_fixture.h"

namespace tonadex::test::window_test {

using namespace core::literals;
using shell::RowList;

TEST(MainWindow, TheNavigationRowIsSpokenAsTabs) {
  TestWindow t;
  t.Click("cmdbuscar");
  for (QAbstractButton* button : t.NavigationRow()) {
    auto* spoken = QAccessible::queryAccessibleInterface(button);
    const bool page = button->isCheckable();  // the help button does not select a page
    EXPECT_EQ(spoken->role() == QAccessible::PageTab, page) << button->text().toStdString();
    EXPECT_EQ(spoken->state().selected, button->objectName() == "cmdbuscar");
    EXPECT_FALSE(spoken->text(QAccessible::Name).contains('&'));
  }
  auto* tab = QAccessible::queryAccessibleInterface(t.Widget("cmdopciones"));
  tab->actionInterface()->doAction(QAccessibleActionInterface::pressAction());
  EXPECT_EQ(t.form.paginaactual, app::kOptionsPage);
}

TEST(MainWindow, EnterOnTheListPlaysAndTheDrawingFollows) {
  TestWindow t;
  shell::QtMessageBoxes boxes(t.hooks);
  core::ScopedMessageSink sink(boxes);
  t.AddMelody("vals.20", "Vals:d=4,o=5,b=60:c,e,g,c6");
  t.window.show();
  t.Click("cmdrepertorio");
  t.SelectRow(0);
  t.position = 1500;
  const auto* view = t.window.findChild<shell::MelodyView*>("repertoireView");
  t.test.program.gPhoneModel = " Pulsaciones";
  t.Click("picconvertir");
  const auto* display = t.window.findChild<shell::PhoneDisplay*>();
  for (const Qt::Key key : {Qt::Key_Return, Qt::Key_Escape, Qt::Key_Space, Qt::Key_Q}) {
    bool seen = false;
    QTimer::singleShot(0, qApp, [&] {
      EXPECT_EQ(QApplication::activeModalWidget(), nullptr) << "the bar stands for the box";
      EXPECT_TRUE(QTest::qWaitFor([view] { return view->Picture().sounding() == 1; }));
      EXPECT_EQ(t.window.findChild<QLabel*>("playingText")->text().remove(QChar(0x200B)),
                "Reproduciendo melodia: Vals");
      EXPECT_EQ(t.window.findChild<QLabel*>("playingPosition")->text(), "0:01 de 0:04");
      EXPECT_EQ(display->MarkedGroup(), 1);
      QTest::mouseClick(t.Widget("cmdinicio"), Qt::LeftButton);  // ignored, as under a message box
      EXPECT_EQ(t.form.paginaactual, 3);
      seen = t.Widget("stopButton")->isVisible();
      QTest::keyClick(QApplication::focusWidget(), key,
                      key == Qt::Key_Q ? Qt::ControlModifier : Qt::NoModifier);
    });
    QTest::keyClick(t.Widget("List1"), Qt::Key_Return);
    EXPECT_TRUE(seen);
    EXPECT_FALSE(t.Widget("stopButton")->isVisible());
    EXPECT_EQ(view->Picture().sounding(), -1);
    EXPECT_EQ(display->MarkedGroup(), -1);
  }
  EXPECT_EQ(t.test.sequencer.commands.back(), "close mR2M");
  shell::QtShellServices(t.hooks, t.repainting, {}, {}).CopyText("uno\r\ndos");
  EXPECT_EQ(QApplication::clipboard()->text(), "uno\ndos");
}

TEST(MainWindow, AClickInThePictureOfAMidiFileSelectsAVoice) {
  const QFont usual = QApplication::font();
  const auto restore = qScopeGuard([&usual] { QApplication::setFont(usual); });
  QApplication::setFont(QFont(usual.family(), 2 * usual.pointSize()));
  TestWindow t;
  t.window.show();
  const std::vector<midi::SmfNote> low = {{0, 96, 48, 0, 64}}, high = {{0, 48, 72, 1, 64}};
  t.window.Run([&t, bytes = SmfOf({high, low}, 48)] { t.form.OpenMidiFile(bytes, "dos.mid"); });
  auto* view = t.window.findChild<shell::ShapeView*>("midiVoicesView");
  ASSERT_TRUE(view->isVisible());
  const auto& shapes = view->Shown();
  const auto second = std::ranges::find(shapes, 1, &app::Shape::hit);
  ASSERT_NE(second, shapes.end());
  QTest::mouseClick(view, Qt::LeftButton, {},
                    QPointF(second->box.x + 5, second->box.y + 5).toPoint());
  EXPECT_EQ(t.window.findChild<RowList*>("midiVoices")->SelectedRow(), 1);
  QCoreApplication::processEvents();
  const auto place = [&t](const QWidget* widget) {
    return QRect(widget->mapTo(&t.window, QPoint()), widget->size());
  };
  constexpr std::pair<const char*, const char*> kRows[] = {{"midiVoices", "midiBar"},
                                                           {"midiBar", "midiView"},
                                                           {"phonesOctaves", "midiView"},
                                                           {"midiView", "midiText"}};
  for (const auto& [above, below] : kRows) {
    EXPECT_FALSE(place(t.Widget(above)).intersects(place(t.Widget(below))))
        << above << " and " << below << " in large type";
  }
}

// The typing guide, controlled only by the keyboard.
TEST(MainWindow, TheGuideIsWalkedThroughByItsKeys) {
  TestWindow t;
  t.AddMelody("vals.20", "Vals:d=4,o=5,b=60:c,8e.,2g,c6");
  t.test.program.gPhoneModel = " Pulsaciones";
  t.window.show();
  ASSERT_TRUE(QTest::qWaitForWindowActive(&t.window));
  t.Click("cmdrepertorio");
  t.SelectRow(0);
  t.Click("picconvertir");
  QTest::keyClick(&t.window, Qt::Key_F5);
  const auto* step = t.window.findChild<shell::ShapeView*>("stepView");
  const auto* view = t.window.findChild<shell::MelodyView*>("guideView");
  EXPECT_EQ(t.window.focusWidget(), step);
  const auto press = [&t](Qt::Key key) { QTest::keyClick(t.window.focusWidget(), key); };
  constexpr std::pair<Qt::Key, int> kKeys[] = {
      {Qt::Key_Space, 2}, {Qt::Key_Return, 3}, {Qt::Key_Right, 4}, {Qt::Key_Backspace, 3},
      {Qt::Key_Home, 1},  {Qt::Key_End, 4},    {Qt::Key_Left, 3}};
  for (const auto& [key, at] : kKeys) {
    press(key);
    EXPECT_TRUE(step->accessibleName().startsWith(QString("%1 de 4: ").arg(at))) << key;
    EXPECT_EQ(view->Picture().sounding(), at - 1);
  }
  QTest::mouseClick(t.Widget("previousGroup"), Qt::LeftButton);
  press(Qt::Key_Space);
  EXPECT_EQ(view->Picture().sounding(), 2) << "a click leaves the keys to the guide";
  for (const auto& [name, key, at] :
       {std::tuple("firstGroup", Qt::Key_Return, 0), {"lastGroup", Qt::Key_Space, 3}}) {
    t.Widget(name)->setFocus();
    press(key);
    EXPECT_EQ(view->Picture().sounding(), at) << "a button that has the focus is pressed";
  }
  press(Qt::Key_Escape);
  EXPECT_EQ(t.form.paginaactual, app::kRepertoirePage);
}

// What the window adds to the model: keys, the menu, tooltips, and dropped files.
TEST(MainWindow, TheRepertoireIsKeptInOrder) {
  TestWindow t;
  t.AddMelody("vals.20", "Vals:d=4,o=5,b=60:c,e");
  t.AddMelody("aire.20", "Aire:d=4,o=5,b=60:c,g");
  t.window.show();
  ASSERT_TRUE(QTest::qWaitForWindowActive(&t.window));
  t.Click("cmdrepertorio");
  auto* list = qobject_cast<RowList*>(t.Widget("List1"));
  const auto selected = [list] { return list->currentIndex().data().toString().toStdString(); };
  t.window.resize(1400, 700);
  QApplication::processEvents();
  EXPECT_EQ(QApplication::focusWidget(), list) << "another layout keeps the focus";
  QTest::keyClicks(list, "v");
  EXPECT_EQ(selected(), "Vals");
  EXPECT_EQ(list->currentIndex().data(Qt::ToolTipRole), "vals.20");
  QTest::keyClick(list, Qt::Key_Up);
  QTest::keyClick(list, Qt::Key_F10, Qt::ShiftModifier);
  auto* menu = qobject_cast<QMenu*>(QApplication::activePopupWidget());
  ASSERT_NE(menu, nullptr);
  EXPECT_EQ(menu->actions().size(), 14);
  menu->actions().at(6)->trigger();
  menu->close();
  EXPECT_EQ(selected(), "Aire 2");
  QTest::keyClick(list, Qt::Key_F2);
  QTest::keyClick(t.Widget("entryBox"), Qt::Key_Escape);
  EXPECT_EQ(QApplication::focusWidget(), list);
  QTest::keyClick(list, Qt::Key_F2);
  QTest::keyClicks(t.Widget("entryBox"), "Zambra");
  QTest::keyClick(t.Widget("entryBox"), Qt::Key_Return);
  EXPECT_EQ(selected(), "Zambra");
  QTest::keyClick(list, Qt::Key_Delete);
  EXPECT_EQ(list->Rows().size(), 2U);

  t.SelectRow(1);
  QTest::keyClick(&t.window, Qt::Key_F, Qt::ControlModifier);
  QTest::keyClick(t.Widget("repertoireFilter"), Qt::Key_Down);
  EXPECT_EQ(selected(), "Vals") << "the selection is kept";
  QTest::keyClicks(t.Widget("repertoireFilter"), "ai");
  EXPECT_EQ(list->Rows().size(), 1U);
  QTest::keyClick(t.Widget("repertoireFilter"), Qt::Key_Down);
  EXPECT_EQ(QApplication::focusWidget(), list);
  EXPECT_EQ(selected(), "Aire");

  t.test.folder.Write("nueva.txt", "Nueva:d=4,o=5,b=60:c");
  QMimeData dropped;
  dropped.setUrls(
      {QUrl::fromLocalFile(QString::fromStdU16String((t.test.folder / "nueva.txt").u16string()))});
  QDragEnterEvent enter({5, 5}, Qt::CopyAction, &dropped, Qt::LeftButton, {});
  QApplication::sendEvent(&t.window, &enter);
  QDropEvent drop({5, 5}, Qt::CopyAction, &dropped, Qt::LeftButton, {});
  QApplication::sendEvent(&t.window, &drop);
  EXPECT_EQ(selected(), "Nueva");
}

TEST(MainWindow, TheServersNewestMelodiesHaveButtonsOnTheirRows) {
  TestWindow t;
  t.test.http.replies = {"Aire (aire.20)498Vals (vals.20)498", "Vals:d=4,o=5,b=60:c"};
  t.window.show();
  t.Click("cmdinicio");
  auto* list = qobject_cast<RowList*>(t.Widget("newsList"));
  ASSERT_TRUE(QTest::qWaitFor([list] { return list->Rows().size() == 2; }));
  const QRect row = list->visualRect(list->model()->index(1, 0));
  QTest::mouseClick(list->viewport(), Qt::LeftButton, {}, list->ButtonPlace(row, 0).center());
  EXPECT_EQ(t.test.program.gMelody.Name, "Vals");
  EXPECT_EQ(t.test.sequencer.commands.back(), "close mR2M");
}

// The requests of each page that sends any.
TEST(MainWindow, EscAndCloseEndARequestAndTheWaitingLineSaysSo) {
  constexpr std::tuple<const char*, const char*, Qt::Key> kWays[] = {
      {"cmdbuscar", "picabuscar", Qt::Key_Escape},
      {"cmdinicio", "cmdsubirmelortttl", Qt::Key_Escape},
      {"cmdinicio", "cmdsubirmelortttl", Qt::Key_Q},
      {"cmdinicio", "cmdsubirmelortttl", Qt::Key_Close}};
  for (const auto& [page, button, key] : kWays) {
    const bool close = key != Qt::Key_Escape;
    TestWindow t;
    t.window.show();
    t.Click(page);
    qobject_cast<QPlainTextEdit*>(t.Widget("txtrtttlsube"))->setPlainText("a:d=4,o=5,b=99:c");
    auto* line = t.window.findChild<shell::WaitingLine*>();
    ASSERT_NE(line, nullptr);
    EXPECT_FALSE(line->isVisible());
    t.test.http.during = [&t, line, key = key] {
      EXPECT_TRUE(line->isVisible());
      EXPECT_TRUE(t.window.rect().contains(line->geometry()));
      EXPECT_EQ(line->text(), shell::ToQString(app::words::kWaiting));
      EXPECT_NE(QApplication::overrideCursor(), nullptr);
      // Other input is discarded, not delayed.
      t.Click("cmdrepertorio");
      for (const auto type : {QEvent::KeyPress, QEvent::KeyRelease}) {
        QApplication::postEvent(t.Widget("cmdopciones"), new QKeyEvent(type, Qt::Key_Space, {}));
      }
      QTimer::singleShot(0, &t.window, [&t, key] {
        key == Qt::Key_Close
            ? static_cast<void>(t.window.close())
            : QTest::keyClick(&t.window, key,
                              key == Qt::Key_Q ? Qt::ControlModifier : Qt::NoModifier);
      });
      t.repainting.Once(shell::Repainting::Input::kLost);
      EXPECT_TRUE(t.window.isVisible());
      app::CheckGivenUp(t.test.program);
      ADD_FAILURE() << "the request goes on";
    };
    const std::int16_t shown = t.form.paginaactual;
    t.Click(button);
    QApplication::sendPostedEvents();
    EXPECT_EQ(QApplication::overrideCursor(), nullptr);
    EXPECT_EQ(t.form.paginaactual, shown);
    EXPECT_EQ(t.test.http.urls.size(), 1U);
    EXPECT_FALSE(line->isVisible());
    EXPECT_EQ(t.test.shell.ends, close ? 1 : 0);
    EXPECT_EQ(t.test.boxes.messages.size(), 0U);
  }
}

TEST(MainWindow, TheCloseButtonIsRememberedWhileAHandlerPaints) {
  TestWindow t;
  t.window.show();
  t.window.Run([&t] {
    QTimer::singleShot(0, &t.window, [&t] { t.window.close(); });
    t.repainting.Once(shell::Repainting::Input::kKept);
    EXPECT_EQ(t.test.shell.ends, 0);
  });
  EXPECT_EQ(t.test.shell.ends, 1);
}

// Text as dead keys, input methods and unusual keyboards send it.
TEST(MainWindow, TheTempoBoxTakesThreeDigitsHoweverTheyAreTyped) {
  constexpr std::tuple<const char8_t*, const char*, int> kRows[] = {
      {u8"12áé", "12", 2}, {u8"99999", "999", 2}, {u8"á", "", 1},
      {u8"𝄞", "", 1},      {u8"1€2", "12", 1},    {u8"", "", 0}};
  enum { kInputMethod, kKey, kAltKey };
  for (const auto& [text, taken, beeps] : kRows) {
    for (const int way : {kInputMethod, kKey, kAltKey}) {
      TestWindow t;
      t.window.show();
      t.Click("cmdinicio");
      auto* tempo = qobject_cast<QComboBox*>(t.Widget("txtcompoTempo"));
      tempo->clearEditText();
      const QString typed = QString::fromUtf8(text);
      QInputMethodEvent commit;
      commit.setCommitString(typed);
      QKeyEvent key(QEvent::KeyPress, 0, way == kAltKey ? Qt::AltModifier : Qt::NoModifier, typed);
      QApplication::sendEvent(tempo, way == kInputMethod ? static_cast<QEvent*>(&commit) : &key);
      EXPECT_EQ(tempo->currentText(), taken) << typed.toStdString() << way;
      EXPECT_EQ(t.test.shell.beeps, beeps) << typed.toStdString() << way;
      QApplication::clipboard()->setText("2000");
      QTest::keyClick(tempo, Qt::Key_V, Qt::ControlModifier);
      EXPECT_EQ(tempo->currentText(), QString(taken) + "2000") << "pasting is no typing";
    }
  }
}

TEST(MainWindow, AClickOnTheMarkedMakeListsItsModelsAnew) {
  TestWindow t;
  t.test.program.gPhoneModel = "Ladrillo 9000";  // a model of a later version's catalogue
  t.window.show();
  t.Click("cmdopciones");
  auto* makes = qobject_cast<RowList*>(t.Widget("cmbmarcas"));
  auto* models = qobject_cast<RowList*>(t.Widget("formatList"));
  EXPECT_EQ(models->SelectedRow(), -1);
  EXPECT_EQ(models->currentIndex().data().toString(), "Ladrillo 9000");
  const int rows = models->model()->rowCount();
  QTest::mouseClick(makes->viewport(), Qt::LeftButton, {},
                    makes->visualRect(makes->currentIndex()).center());
  EXPECT_EQ(t.form.cmbformatos.text, " RTTTL (cable)");
  EXPECT_EQ(models->SelectedRow(), 0);
  EXPECT_EQ(models->model()->rowCount(), rows - 1);
}

// Bad notes are underlined until they are repaired, and the draft survives a kill.
TEST(MainWindow, APastedMelodyIsMarkedMendedAndKept) {
  TestProgram test;
  shell::WindowHooks hooks;
  shell::Repainting repainting;
  const auto make = [&] {
    auto window = std::make_unique<shell::MainWindow>(test.program, hooks, repainting,
                                                      [] { return std::nullopt; });
    window->Load();
    window->show();
    window->findChild<QAbstractButton*>("cmdinicio")->click();
    return window;
  };
  const auto window = make();
  auto* box = window->findChild<QPlainTextEdit*>("txtrtttlsube");
  auto* mime = new QMimeData;
  mime->setHtml("<b>V:d=4,o=5,b=90:c</b><br>,8c6.,ñx");
  mime->setText(u8"V:d=4,o=5,b=90:c\n,8c6.,ñx");
  QApplication::clipboard()->setMimeData(mime);
  QTest::keyClick(box, Qt::Key_V, Qt::ControlModifier);
  QStringList marked;
  for (const auto& fault : box->extraSelections()) {
    EXPECT_EQ(fault.format.underlineStyle(), QTextCharFormat::WaveUnderline);
    marked << fault.cursor.selectedText();
  }
  EXPECT_EQ(marked, QStringList({u8"c\u2029", "8c6.", u8"ñx"}));
  EXPECT_FALSE(QTextCursor(box->document()).charFormat().fontWeight() > QFont::Normal);
  window->resize(800, 640);  // the size of the test screen
  QTest::keyClick(box, Qt::Key_End, Qt::ControlModifier);

  ASSERT_TRUE(QTest::qWaitFor([&] { return std::filesystem::exists(test.folder / "estado.ini"); }));
  const auto next = make();  // as after a kill: the first window is not closed
  box = next->findChild<QPlainTextEdit*>("txtrtttlsube");
  EXPECT_EQ(box->toPlainText(), u8"V:d=4,o=5,b=90:c\n,8c6.,ñx");
  EXPECT_EQ(next->size(), QSize(800, 640));
  box->setPlainText("V:d=4,o=5,b=90:c");
  EXPECT_TRUE(box->extraSelections().isEmpty());
}

TEST(MainWindow, ThePhonesKeysComposeAndTheDrawingFollows) {
  TestWindow t;
  t.window.resize(shell::kLeastWidth, shell::kLeastHeight);
  t.window.show();
  t.Click("cmdinicio");
  QCoreApplication::processEvents();
  auto* notes = qobject_cast<QPlainTextEdit*>(t.Widget("txtmelodiacompo"));
  for (QPushButton* key : t.Widget("keyRow")->findChildren<QPushButton*>()) {
    EXPECT_TRUE(key->parentWidget()->rect().contains(key->geometry())) << key->text().toStdString();
    if (key->text() == "1" || key->text() == "8" || key->text() == "#" || key->text() == "0") {
      key->click();
    }
  }
  EXPECT_EQ(t.form.composerDrawing.notes.size(), 2U);
  EXPECT_EQ(shell::FromQString(notes->toPlainText()), t.form.txtmelodiacompo.text);
  notes->undo();
  EXPECT_NE(shell::FromQString(notes->toPlainText()), "");
}

TEST(MainWindow, ShortcutsAndEnterLeadToThePages) {
  constexpr const char* kText = "Himno a la Alegria:d=4,o=5,b=140:8e,8e,8f,8g,8g,8f,8e,8d,8c,8c";
  TestWindow t;
  t.AddMelody("vals.20", "Vals:d=4,o=5,b=60:c,e");
  t.test.program.gPhoneModel = " Compositor";
  t.window.resize(shell::kLeastWidth, shell::kLeastHeight);
  t.window.show();
  ASSERT_TRUE(QTest::qWaitForWindowActive(&t.window));
  constexpr std::pair<Qt::Key, int> kPages[] = {{Qt::Key_1, app::kStartPage},
                                                {Qt::Key_2, app::kSearchPage},
                                                {Qt::Key_3, app::kRepertoirePage},
                                                {Qt::Key_4, app::kInternetPage},
                                                {Qt::Key_5, app::kOptionsPage}};
  for (const auto& [key, page] : kPages) {
    QTest::keyClick(&t.window, key, Qt::ControlModifier);
    EXPECT_EQ(t.form.paginaactual, page);
    QTest::keyClick(&t.window, Qt::Key_O, Qt::ControlModifier);
    qobject_cast<QPlainTextEdit*>(t.Widget("txtrtttlsube"))->setPlainText(kText);
    QCoreApplication::processEvents();
    for (const QScrollArea* area : t.window.findChildren<QScrollArea*>()) {
      EXPECT_TRUE(!area->isVisible() || area->verticalScrollBar()->maximum() == 0)
          << "page " << page << ": " << area->verticalScrollBar()->maximum() << " px too high";
    }
  }
  EXPECT_EQ(t.test.fileDialogs.proposed, std::vector<std::string>(5, "(open)"));
  for (const Qt::Key key : {Qt::Key_Return, Qt::Key_Enter}) {
    t.Click("cmdopciones");
    t.Widget("cmdbuscar")->setFocus();
    QTest::keyClick(t.Widget("cmdbuscar"), key);
    EXPECT_EQ(t.form.paginaactual, app::kSearchPage);
  }
  t.Click("cmdopciones");
  QTest::keyClick(&t.window, Qt::Key_F1);
  EXPECT_EQ(t.test.shell.help, std::vector{t.test.folder / "TONADEX.HLP"});
  QTest::keyClick(&t.window, Qt::Key_Escape);
  EXPECT_EQ(QApplication::focusWidget(), t.Widget("cmdopciones"));
}

TEST(Theme, AStandingWindowTakesTheColoursThatTheSystemChangesTo) {
  TestWindow t;
  t.window.show();
  t.Click("cmdopciones");
  int changes = 0;
  const shell::SchemeWatcher watcher([&changes] {
    shell::ApplyTheme(*qApp, changes % 2 == 0);
    ++changes;
  });
  for (const bool dark : {true, false}) {
    const int before = changes;
    QEvent themeChange(QEvent::ThemeChange);
    QApplication::sendEvent(&t.window, &themeChange);
    QApplication::sendEvent(t.Widget("cmbmarcas"), &themeChange);
    EXPECT_TRUE(QTest::qWaitFor([&] { return changes > before; }));
    EXPECT_EQ(changes, before + 1);
    EXPECT_EQ(shell::CurrentTheme().dark, dark);
    const QImage picture = t.window.grab().toImage();
    EXPECT_EQ(picture.pixelColor(picture.width() / 2, picture.height() - 4).lightness() < 128,
              dark);
    const QImage phone = qobject_cast<QLabel*>(t.Widget("optionsPicture"))->pixmap().toImage();
    for (int y = 0; y < phone.height(); ++y) {
      const QColor ink = phone.pixelColor(phone.width() / 2, y);
      EXPECT_TRUE(ink.alpha() < 255 || (ink.lightness() > 128) == dark);
    }
  }
}

// Calls `answer` with the next dialog.
void Answer(const std::function<void(QFileDialog&)>& answer) {
  QTimer::singleShot(0, qApp, [answer] {
    auto* dialog = qobject_cast<QFileDialog*>(QApplication::activeModalWidget());
    ASSERT_NE(dialog, nullptr);
    answer(*dialog);
  });
}

void Choose(QFileDialog& dialog, const QString& file) {
  dialog.selectFile(file);
  QMetaObject::invokeMethod(&dialog, "accept");
}

TEST(QtFileDialogs, AskWhereToSaveAnyPath) {
  shell::WindowHooks hooks;
  TempFolder folder;
  Answer([&folder](QFileDialog& dialog) {
    dialog.selectNameFilter("Otro (*.txt)");
    Choose(dialog, QString::fromStdString(folder.path().string()) + u8"/曲.txt");
  });
  const std::array<std::string, 2> kinds = {"Texto (*.txt)", "Otro (*.txt)"};
  const auto choice = shell::QtFileDialogs(hooks).AskSaveAs("Guardar", "a.txt", kinds);
  ASSERT_TRUE(choice);
  EXPECT_EQ(choice->file, folder / u8"曲.txt");
  EXPECT_EQ(choice->kind, 1u);
}

TEST(QtFileDialogs, AskAsTheRecordSays) {
  shell::WindowHooks hooks;
  shell::QtFileDialogs dialogs(hooks);
  TempFolder folder;
  app::FileDialogRecord record;
  record.lpstrFilter = std::string(" (*.kws)\0*.kws\0\0", 16);
  record.lpstrTitle = u8"Grabar Melodía kws"_w;
  record.lpstrInitialDir = folder.path().string();
  record.nFilterIndex = 2;
  record.lpstrFile = std::string(261, '\0');
  const std::string before = record.lpstrFile;
  Answer([](QFileDialog& dialog) {
    EXPECT_EQ(dialog.windowTitle(), u8"Grabar Melodía kws");
    EXPECT_EQ(dialog.nameFilters(), QStringList{"*.kws"});
    dialog.close();
  });
  EXPECT_FALSE(dialogs.GetSaveFileName(record));
  EXPECT_EQ(record.lpstrFile, before);
  Answer([](QFileDialog& dialog) { Choose(dialog, u8"canción.kws"); });
  EXPECT_TRUE(dialogs.GetSaveFileName(record));
  EXPECT_EQ(record.lpstrFile, folder.path().string() + std::string(u8"/canción.kws"_w));
  EXPECT_EQ(record.lpstrFileTitle, u8"canción.kws"_w);
}

}  // namespace tonadex::test::window_test
