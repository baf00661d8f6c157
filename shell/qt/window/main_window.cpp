#include "shell/qt/window/main_window.h"

#include <QApplication>
#include <QClipboard>
#include <QCloseEvent>
#include <QComboBox>
#include <QDir>
#include <QFileDialog>
#include <QInputMethodEvent>
#include <QLabel>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QScreen>
#include <QShortcut>
#include <QSlider>
#include <QStandardPaths>
#include <QStyle>
#include <QTimer>
#include <QToolButton>
#include <algorithm>
#include <array>
#include <filesystem>

#include "app/composer_keys.h"
#include "app/words.h"
#include "core/runtime_error.h"
#include "files/write.h"
#include "shell/qt/text.h"
#include "shell/qt/theme/theme.h"
#include "shell/qt/widgets/key_row.h"
#include "shell/qt/widgets/melody_view.h"
#include "shell/qt/widgets/phone_display.h"
#include "shell/qt/widgets/row_list.h"
#include "shell/qt/widgets/waiting_line.h"
#include "shell/qt/widgets/web_pane.h"

namespace tonadex::shell {
namespace {

namespace words = app::words;
using app::Form1;

void DrawCheck(QLabel* label, const app::Check& check) {
  label->setText(ToQString(check.sentence));
  const char* tone = check.verdict == app::Verdict::kGood  ? "good"
                     : check.verdict == app::Verdict::kBad ? "bad"
                                                           : "";
  if (label->property("tone").toString() != QLatin1String(tone)) {
    label->setProperty("tone", QLatin1String(tone));
    label->style()->unpolish(label);
    label->style()->polish(label);
  }
}

}  // namespace

MainWindow::MainWindow(app::Program& program, WindowHooks& hooks, Repainting& repainting,
                       Position position)
    : program_(program),
      hooks_(hooks),
      repainting_(repainting),
      position_(std::move(position)),
      form_(program),
      binding_(form_, this, [this](const Binding::Handler& handler) { Run(handler); }),
      parts_(LayOut(binding_, this)),
      follow_(new QTimer(this)),
      waitingLine_(new WaitingLine(ToQString(words::kWaiting), this,
                                   binding_.Widget(&Form1::cmdinicio)->parentWidget())) {
  setObjectName(QStringLiteral("Form1"));
  setWindowTitle(ToQString(words::kWindowTitle));
  setMinimumSize(kLeastWidth, kLeastHeight);
  resize(QSize(kFirstWidth, kFirstHeight)
             .boundedTo(screen()->availableSize())
             .expandedTo(minimumSize()));
  for (const MelodyPart& melody : parts_.Melodies()) {
    melody.view->setAccessibleName(ToQString(words::kDrawing));
  }
  follow_->setInterval(kFollowMs);
  connect(follow_, &QTimer::timeout, this, &MainWindow::FollowMelody);

  hooks_.window = this;
  hooks_.draw = [this] { Draw(); };
  hooks_.opened = [this](QWidget* box) {
    if (form_.sounding != app::Sounding::kNothing) {
      PlaceBox(box);
      follow_->start();
    }
  };
  hooks_.closed = [this] {
    follow_->stop();
    FollowMelody();
  };
  hooks_.page = qobject_cast<WebPane*>(binding_.Widget(&Form1::WebBrowser1));
  hooks_.banner = qobject_cast<WebPane*>(binding_.Widget(&Form1::navbanner));
  program_.busyChanged = [this] { DrawBusy(); };
  repainting_.escape = [this] { app::GiveUpRequest(program_); };
  ConnectParts();
  AddShortcuts();
  SetTabOrder();
}

MainWindow::~MainWindow() {
  program_.busyChanged = nullptr;
  repainting_.escape = nullptr;
  hooks_.draw = nullptr;
  hooks_.opened = nullptr;
  hooks_.closed = nullptr;
}

void MainWindow::PrepareBrowser() const {
  hooks_.page->Prepare();
}

void MainWindow::Load() {
  program_.window = static_cast<std::intptr_t>(winId());
  app::RunHandler(program_, [this] { form_.Form_Load(); });
  loaded_ = true;
  Draw();
}

void MainWindow::Run(const Binding::Handler& handler) {
  if (!loaded_ || repainting_.Active()) {
    return;
  }
  app::RunHandler(program_, [&] {
    binding_.CopyIn();
    handler();
  });
  app::RunHandler(program_, [this] { Draw(); });
}

// ---- Wiring -------------------------------------------------------------------------------------

void MainWindow::ConnectParts() {
  const auto options = [this] { Run([this] { form_.cmdopciones_Click(); }); };
  connect(parts_.phone, &QToolButton::clicked, this, options);
  connect(parts_.goToSearch, &QPushButton::clicked, this,
          [this] { Run([this] { form_.cmdbuscar_Click(); }); });
  connect(parts_.copy, &QPushButton::clicked, this, &MainWindow::CopyResult);
  connect(parts_.saveAs, &QPushButton::clicked, this, &MainWindow::SaveResult);
  connect(parts_.keys, &KeyRow::KeyPressed, this, &MainWindow::PressKey);
  // The box keeps the focus and hands keys on to its line, past a filter of the line.
  binding_.Widget(&Form1::txtcompoTempo)->installEventFilter(this);
  binding_.Widget(&Form1::txtbuscar)->installEventFilter(this);
}

void MainWindow::AddShortcuts() {
  for (const app::NavigationInfo& info : app::NavigationRow()) {
    auto* button = qobject_cast<QAbstractButton*>(binding_.Widget(info.button));
    const QKeySequence keys = info.digit == '\0' ? QKeySequence(Qt::Key_F1)
                                                 : QKeySequence(Qt::CTRL | Qt::Key(info.digit));
    auto* shortcut = new QShortcut(keys, this);
    connect(shortcut, &QShortcut::activated, button, [button] { button->click(); });
  }
  connect(new QShortcut(QKeySequence(QKeySequence::Quit), this), &QShortcut::activated, this,
          &QWidget::close);
  auto* escape = new QShortcut(QKeySequence(Qt::Key_Escape), this);
  connect(escape, &QShortcut::activated, this, [this] {
    if (const app::Control* shown = form_.NavigationButton()) {
      for (const BoundControl& bound : binding_.Controls()) {
        if (&(form_.*bound.info->member) == shown) {
          bound.widget->setFocus(Qt::ShortcutFocusReason);
        }
      }
    }
  });
}

// Reading order: the model's order, with the window's own widgets behind what they belong to.
void MainWindow::SetTabOrder() {
  QWidget* last = nullptr;
  const auto follow = [&last](QWidget* next) {
    if (next->focusPolicy() == Qt::NoFocus) {
      return;  // such a one would break the chain
    }
    if (last != nullptr) {
      QWidget::setTabOrder(last, next);
    }
    last = next;
  };
  for (const BoundControl& bound : binding_.Controls()) {
    if (bound.widget == nullptr) {
      continue;
    }
    if (bound.info->member == &Form1::cmdayuda) {
      follow(parts_.phone);
    }
    follow(bound.widget);
    if (bound.info->member == &Form1::List1) {
      follow(parts_.goToSearch);
    } else if (bound.info->member == &Form1::textresultado) {
      follow(parts_.copy);
      follow(parts_.saveAs);
      follow(parts_.size);
    } else if (bound.info->member == &Form1::txtmelodiacompo) {
      follow(parts_.keys->First());
      last = parts_.keys->Last();
      follow(parts_.composerView);
    } else if (bound.info->member == &Form1::txtrtttlsube) {
      follow(parts_.rtttlView);
    } else if (bound.info->member == &Form1::picimprimir) {
      follow(parts_.repertoireView);
    }
  }
}

// ---- Drawing ------------------------------------------------------------------------------------

void MainWindow::Draw() {
  if (!loaded_) {
    return;
  }
  DrawGroups();
  binding_.Draw();
  DrawParts();
  DrawResult();
  DrawDrawings();
  if (pageDrawn_ != form_.paginaactual) {
    pageDrawn_ = form_.paginaactual;
    FocusPage();
  }
}

// A part of the window shows while one of the controls in it does.
void MainWindow::DrawGroups() {
  for (QWidget* group : std::as_const(parts_.groups)) {
    const bool shown =
        std::ranges::any_of(binding_.Controls(), [this, group](const BoundControl& bound) {
          return bound.widget != nullptr && (form_.*bound.info->member).visible &&
                 group->isAncestorOf(bound.widget);
        });
    if (group->isHidden() == shown) {
      group->setVisible(shown);
    }
  }
  const bool narrow = !parts_.resultColumn->isHidden();
  parts_.listColumn->setMaximumWidth(narrow ? kListWidth : QWIDGETSIZE_MAX);
  parts_.listColumn->setMinimumWidth(narrow ? kListWidth : 0);
}

void MainWindow::DrawParts() {
  const app::Control* shown = form_.NavigationButton();
  for (const app::NavigationInfo& info : app::NavigationRow()) {
    auto* button = qobject_cast<QAbstractButton*>(binding_.Widget(info.button));
    button->setChecked(&(form_.*info.button) == shown);
  }
  const QString phone = ToQString(form_.PhoneLabel());
  parts_.phone->setText(phone);
  parts_.phone->setAccessibleName(phone);
  parts_.phone->setToolTip(ToQString(words::kChoosePhone));
  parts_.optionsSentence->setText(ToQString(form_.OptionsSentence()));
  parts_.goToSearch->setVisible(form_.OffersSearch());
  qobject_cast<RowList*>(binding_.Widget(&Form1::List1))
      ->SetInvitation(ToQString(form_.EmptySentence()));
  parts_.display->SetInvitation(ToQString(form_.EmptyResultSentence()));
  DrawCheck(parts_.composerCheck, form_.composerCheck);
  DrawCheck(parts_.rtttlCheck, form_.rtttlCheck);
  parts_.copy->setEnabled(form_.ResultCanBeSaved());
  parts_.saveAs->setEnabled(form_.ResultCanBeSaved());
}

void MainWindow::DrawResult() {
  const QString text = ToQString(form_.textresultado.text);
  if (text == parts_.display->Text()) {
    return;
  }
  std::vector<DisplayGroup> groups;
  for (const app::ResultGroup& group : form_.ResultGroupsShown()) {
    groups.push_back(
        {ToQString(group.text), static_cast<int>(group.heldFrom), static_cast<int>(group.heldTo)});
  }
  parts_.display->SetResult(text, groups, form_.ResultIsKeyPresses());
  parts_.copy->setText(ToQString(words::kCopy));
}

void MainWindow::DrawDrawings() {
  for (const MelodyPart& melody : parts_.Melodies()) {
    melody.view->SetDrawing(form_.*melody.drawing, ToQString(words::kDrawing));
  }
}

void MainWindow::FocusPage() {
  for (const BoundControl& bound : binding_.Controls()) {
    if (!app::IsNavigation(bound.info->member) && bound.widget != nullptr &&
        bound.widget->isVisibleTo(this) && bound.widget->isEnabled() &&
        (bound.widget->focusPolicy() & Qt::TabFocus)) {
      bound.widget->setFocus(Qt::OtherFocusReason);
      return;
    }
  }
}

// ---- Waiting and sounding -----------------------------------------------------------------------

void MainWindow::DrawBusy() {
  if (program_.busy == waiting_) {
    return;
  }
  waiting_ = program_.busy;
  if (waiting_) {
    QApplication::setOverrideCursor(Qt::WaitCursor);
    Draw();
  } else {
    QApplication::restoreOverrideCursor();
  }
  waitingLine_->SetBusy(waiting_);
  repainting_.Once(waiting_ ? Repainting::Input::kKept : Repainting::Input::kLost);
}

void MainWindow::FollowMelody() {
  const std::optional<double> position = position_ ? position_() : std::nullopt;
  for (const MelodyPart& melody : parts_.Melodies()) {
    const bool sounds = follow_->isActive() && form_.sounding == melody.what;
    melody.view->SetPosition(sounds ? position.value_or(-1) : -1);
  }
}

// Away from the drawing that is followed.
void MainWindow::PlaceBox(QWidget* box) const {
  const auto melodies = parts_.Melodies();
  const auto sounding = std::ranges::find(melodies, form_.sounding, &MelodyPart::what);
  if (sounding == melodies.end()) {
    return;
  }
  const MelodyView* view = sounding->view;
  const int middle = view->mapTo(this, view->rect().center()).y();
  const QPoint corner = mapToGlobal(QPoint(0, 0));
  const int x = corner.x() + (width() - box->width()) / 2;
  const int below = corner.y() + height() - box->height() - 3 * kGrid;
  const int above = corner.y() + 2 * kGrid;
  box->move(x, middle < height() / 2 ? below : above);
}

// ---- What the window does by itself -------------------------------------------------------------

void MainWindow::CopyResult() const {
  QApplication::clipboard()->setText(ToQStringLines(form_.textresultado.text));
  parts_.copy->setText(ToQString(words::kCopied));
  QTimer::singleShot(kCopiedMs, parts_.copy,
                     [copy = parts_.copy] { copy->setText(ToQString(words::kCopy)); });
}

void MainWindow::SaveResult() {
  Run([this] {
    const QDir folder(QStandardPaths::writableLocation(QStandardPaths::DocumentsLocation));
    const QString file = QFileDialog::getSaveFileName(
        this, ToQString(words::kSaveAs), folder.filePath(ToQString(form_.SuggestedResultName())));
    if (file.isEmpty()) {
      return;
    }
    const std::filesystem::path path = file.toStdU16String();
    if (!core::SkipErrors([&] { files::WriteBytes(path, form_.textresultado.text); })) {
      core::MsgBox(words::kNotSaved, core::Icon::kExclamation);
    }
  });
}

void MainWindow::PressKey(const QString& key, bool held) {
  auto* area = qobject_cast<QPlainTextEdit*>(binding_.Widget(&Form1::txtmelodiacompo));
  const app::ComposerText before{FromQString(area->toPlainText()),
                                 static_cast<std::size_t>(area->textCursor().position())};
  const app::ComposerText after = app::PressKey(before, FromQString(key), held);
  if (after == before) {
    return;
  }
  QTextCursor cursor(area->document());
  cursor.beginEditBlock();  // one step to undo
  cursor.select(QTextCursor::Document);
  cursor.insertText(ToQString(after.text));
  cursor.endEditBlock();
  cursor.setPosition(static_cast<int>(after.cursor));
  area->setTextCursor(cursor);
}

// What is typed in the tempo box, character by character; the text of a key or of an input method
// may hold several. The box itself is left no typing to do.
void MainWindow::TypeTempo(const QString& typed) {
  auto* box = qobject_cast<QComboBox*>(binding_.Widget(&Form1::txtcompoTempo));
  for (const char character : FromQString(typed)) {
    std::int16_t code = static_cast<unsigned char>(character);
    Run([this, &code] { form_.txtcompoTempo_KeyPress(code); });
    if (code != 0) {
      box->lineEdit()->insert(QChar(code));
    }
  }
}

// Keys that type no character (arrows, Backspace, commands) are the box's own.
bool MainWindow::FilterTempoKey(QKeyEvent* event) {
  const QString typed = event->text();
  const bool command =
      (event->modifiers() & Qt::ControlModifier) && !(event->modifiers() & Qt::AltModifier);
  if (command || typed.isEmpty() || typed[0].category() == QChar::Other_Control) {
    return false;
  }
  TypeTempo(typed);
  return true;
}

// The box still shows what is being put together.
bool MainWindow::FilterTempoText(QInputMethodEvent* event) {
  const QString typed = event->commitString();
  event->setCommitString({}, event->replacementStart(), event->replacementLength());
  TypeTempo(typed);
  return false;
}

// From the search words down into what was found.
bool MainWindow::GoToList(QKeyEvent* event) {
  if (event->key() != Qt::Key_Down) {
    return false;
  }
  auto* list = qobject_cast<RowList*>(binding_.Widget(&Form1::List1));
  list->setFocus(Qt::OtherFocusReason);
  if (list->SelectedRow() < 0) {
    list->setCurrentIndex(list->model()->index(0, 0));
  }
  return true;
}

bool MainWindow::eventFilter(QObject* watched, QEvent* event) {
  const bool search = watched->objectName() == QLatin1String("txtbuscar");
  if (event->type() == QEvent::KeyPress) {
    auto* key = static_cast<QKeyEvent*>(event);
    return search ? GoToList(key) : FilterTempoKey(key);
  }
  if (event->type() == QEvent::InputMethod && !search) {
    return FilterTempoText(static_cast<QInputMethodEvent*>(event));
  }
  return QWidget::eventFilter(watched, event);
}

// Enter presses the button that has the focus; outside dialogs the toolkit knows Space alone.
void MainWindow::keyPressEvent(QKeyEvent* event) {
  const bool enter = event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter;
  auto* button = qobject_cast<QAbstractButton*>(focusWidget());
  if (enter && button != nullptr && !event->isAutoRepeat()) {
    button->click();
  } else {
    QWidget::keyPressEvent(event);
  }
}

void MainWindow::closeEvent(QCloseEvent* event) {
  if (program_.busy) {
    event->ignore();
    form_.Form_QueryUnload();
  } else if (repainting_.Active()) {  // a handler runs
    event->ignore();
    program_.closing = true;
  } else {
    event->accept();
    app::RunHandler(program_, [this] { form_.Form_QueryUnload(); });
  }
}

}  // namespace tonadex::shell
