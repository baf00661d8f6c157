#include "shell/qt/window/main_window.h"

#include <QAbstractButton>
#include <QApplication>
#include <QCloseEvent>
#include <QComboBox>
#include <QDropEvent>
#include <QInputMethodEvent>
#include <QLineEdit>
#include <QMimeData>
#include <QScreen>
#include <QShortcut>
#include <QSignalBlocker>
#include <QSlider>
#include <QTimer>
#include <QUrl>
#include <algorithm>
#include <utility>

#include "app/words.h"
#include "shell/qt/text.h"
#include "shell/qt/theme/theme.h"
#include "shell/qt/widgets/key_row.h"
#include "shell/qt/widgets/melody_view.h"
#include "shell/qt/widgets/phone_display.h"
#include "shell/qt/widgets/row_list.h"
#include "shell/qt/widgets/web_pane.h"

namespace tonadex::shell {
namespace {

namespace words = app::words;
using app::Look;

// The only control that is drawn so.
template <typename Kind>
Kind* The(Look look, const Binding& binding) {
  const auto found = std::ranges::find_if(
      binding.Controls(), [look](const BoundControl& bound) { return bound.info->look == look; });
  return qobject_cast<Kind*>(found->widget);
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
      pages_(binding_, this),
      follow_(new QTimer(this)) {
  setObjectName(QStringLiteral("Form1"));
  setWindowTitle(ToQString(words::kWindowTitle));
  setMinimumSize(QSize(kLeastWidth, kLeastHeight).boundedTo(screen()->availableSize()));
  RestorePlace();
  follow_->setInterval(kFollowMs);
  connect(follow_, &QTimer::timeout, this, &MainWindow::FollowMelody);

  hooks_.window = this;
  hooks_.draw = [this] { Draw(); };
  hooks_.showInWindow = [this](const core::Message& message) { return ShowPlaying(message); };
  hooks_.page = The<WebPane>(Look::kPage, binding_);
  hooks_.banner = The<WebPane>(Look::kBanner, binding_);
  program_.busyChanged = [this] { DrawBusy(); };
  repainting_.escape = [this] { app::GiveUpRequest(program_); };
  repainting_.quit = [this] { close(); };
  ConnectParts();
  AddShortcuts();
}

MainWindow::~MainWindow() {
  program_.busyChanged = nullptr;
  repainting_.escape = repainting_.quit = nullptr;
  hooks_.draw = nullptr;
  hooks_.showInWindow = nullptr;
}

// ---- Place --------------------------------------------------------------------------------------

void MainWindow::RestorePlace() {
  resize(QSize(kFirstWidth, kFirstHeight)
             .boundedTo(screen()->availableSize())
             .expandedTo(minimumSize()));
  if (form_.windowPlace.rect.width == 0) {
    return;
  }
  std::vector<app::Rect> screens;
  for (const QScreen* each : QGuiApplication::screens()) {
    const QRect area = each->availableGeometry();
    screens.push_back({area.x(), area.y(), area.width(), area.height()});
  }
  const app::Rect place = app::OnScreen(form_.windowPlace.rect, screens);
  setGeometry(place.left, place.top, place.width, place.height);
  if (form_.windowPlace.maximised) {
    setWindowState(Qt::WindowMaximized);
  }
}

// The model writes it down by its timer, which drawing starts.
void MainWindow::NotePlace() {
  if (!loaded_ || !isVisible() || isMinimized() || isFullScreen()) {
    return;
  }
  const QRect place = isMaximized() ? normalGeometry() : geometry();
  form_.windowPlace = {{place.x(), place.y(), place.width(), place.height()}, isMaximized()};
  if (!form_.SavesSoon()) {
    QMetaObject::invokeMethod(
        this, [this] { Run([] {}); }, Qt::QueuedConnection);
  }
}

void MainWindow::moveEvent(QMoveEvent* event) {
  QWidget::moveEvent(event);
  NotePlace();
}

void MainWindow::changeEvent(QEvent* event) {
  QWidget::changeEvent(event);
  if (event->type() == QEvent::WindowStateChange) {
    NotePlace();
  }
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
  connect(The<KeyRow>(Look::kKeys, binding_), &KeyRow::KeyPressed, this,
          [this](const QString& key, bool held) {
            Run([&] { form_.keyRow_KeyPressed(FromQString(key), held); });
          });
  // The slider shows the size that the display has, also the one that fits.
  const auto* display = The<PhoneDisplay>(Look::kDisplay, binding_);
  auto* slider = The<QSlider>(Look::kSlider, binding_);
  slider->setValue(display->PixelSize());
  connect(display, &PhoneDisplay::PixelSizeChanged, slider, [slider](int pixels) {
    const QSignalBlocker silent(slider);
    slider->setValue(pixels);
  });
  // Filter the combo box, not its line edit: the combo has the focus and forwards keys past the
  // line edit's filters.
  The<QComboBox>(Look::kComboBox, binding_)->installEventFilter(this);
  for (const BoundControl& bound : binding_.Controls()) {
    if (bound.info->below != nullptr) {
      bound.widget->installEventFilter(this);
    }
  }
  setAcceptDrops(true);
}

void MainWindow::AddShortcuts() {
  for (const BoundControl& bound : binding_.Controls()) {
    auto* button = qobject_cast<QAbstractButton*>(bound.widget);
    const QString shortcuts = ToQString(bound.info->shortcut);
    for (const QString& keys : shortcuts.split(' ', Qt::SkipEmptyParts)) {
      const QKeySequence sequence(keys);
      if (sequence == QKeySequence(Qt::Key_Escape)) {
        continue;  // below
      }
      auto* shortcut = new QShortcut(sequence, bound.widget);  // only while it is shown
      connect(shortcut, &QShortcut::activated, this, [this, bound, button, sequence] {
        if (button == nullptr) {
          Focus(bound.widget);
          return;
        }
        auto* focused = qobject_cast<QAbstractButton*>(focusWidget());
        const bool presses =
            sequence == QKeySequence(Qt::Key_Space) || sequence == QKeySequence(Qt::Key_Return);
        (presses && focused != nullptr ? focused : button)->click();
      });
    }
  }
  connect(new QShortcut(QKeySequence(ToQString(app::kOpenKeys)), this), &QShortcut::activated, this,
          [this] { Run([this] { form_.addButton_Click(); }); });
  connect(new QShortcut(kQuitKey, this), &QShortcut::activated, this, &QWidget::close);
  auto* escape = new QShortcut(QKeySequence(Qt::Key_Escape), this);
  connect(escape, &QShortcut::activated, this, [this] {
    for (const BoundControl& bound : binding_.Controls()) {
      if (bound.info->shortcut == "Esc" && bound.widget->isVisible()) {
        qobject_cast<QAbstractButton*>(bound.widget)->click();
        return;
      }
      if (bound.info->look == Look::kNavigation && (form_.*bound.info->member).checked) {
        bound.widget->setFocus(Qt::ShortcutFocusReason);
      }
    }
  });
}

// In the order of the layout of the page that is shown.
void MainWindow::SetTabOrder() {
  QWidget* last = nullptr;
  for (const auto member : app::ControlsIn(app::WindowLayout(pages_.Shown()))) {
    QWidget* widget = binding_.Widget(member);
    const auto* keys = qobject_cast<KeyRow*>(widget);
    QWidget* first = keys != nullptr ? keys->First() : widget;
    if (first->focusPolicy() == Qt::NoFocus) {
      continue;  // it would break the chain
    }
    if (last != nullptr) {
      QWidget::setTabOrder(last, first);
    }
    last = keys != nullptr ? keys->Last() : widget;
  }
}

// ---- Drawing ------------------------------------------------------------------------------------

void MainWindow::Draw() {
  if (!loaded_) {
    return;
  }
  const bool newPage = pageDrawn_ != form_.paginaactual;
  if (newPage) {
    pageDrawn_ = form_.paginaactual;
    pages_.Show(pageDrawn_, width());
    SetTabOrder();
  }
  form_.Refresh();
  pages_.ShowBars(form_);
  binding_.Draw();
  if (newPage) {
    FocusPage();
  }
  if (const auto member = std::exchange(form_.focusNext, nullptr)) {
    Focus(binding_.Widget(member));
  }
}

// Its whole text is selected, to be typed over.
void MainWindow::Focus(QWidget* widget) {
  if (widget->isVisibleTo(this) && widget->isEnabled()) {
    widget->setFocus(Qt::OtherFocusReason);
    if (auto* line = qobject_cast<QLineEdit*>(widget)) {
      line->selectAll();
    }
  }
}

void MainWindow::dragEnterEvent(QDragEnterEvent* event) {
  if (event->mimeData()->hasUrls()) {
    event->acceptProposedAction();
  }
}

void MainWindow::dropEvent(QDropEvent* event) {
  std::vector<std::filesystem::path> paths;
  for (const QUrl& url : event->mimeData()->urls()) {
    if (url.isLocalFile()) {
      paths.emplace_back(url.toLocalFile().toStdU16String());
    }
  }
  Open(paths);
}

void MainWindow::Open(const std::vector<std::filesystem::path>& files) {
  if (!files.empty()) {
    Run([&] { form_.FilesDropped(files); });
  }
}

// Focuses the first control of the page that accepts it and does not lead away.
void MainWindow::FocusPage() {
  for (const auto member : app::PageControls(form_.paginaactual)) {
    QWidget* widget = binding_.Widget(member);
    if (app::InfoOf(member).look != Look::kCard && widget->isVisibleTo(this) &&
        widget->isEnabled() && (widget->focusPolicy() & Qt::TabFocus)) {
      widget->setFocus(Qt::OtherFocusReason);
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
  } else {
    QApplication::restoreOverrideCursor();
  }
  Draw();
  repainting_.Once(waiting_ ? Repainting::Input::kKept : Repainting::Input::kLost);
}

// The input that reaches the window while its bar stands in for a message box: the bar's button by
// the mouse; Enter, Esc and the space bar press it; Ctrl+Q closes the window.
class MainWindow::BarInput : public QObject {
 public:
  BarInput(QWidget* window, QWidget* stop, std::function<void()> press)
      : window_(window), stop_(stop), press_(std::move(press)) {}

  bool eventFilter(QObject* watched, QEvent* event) override {
    const auto* widget = qobject_cast<QWidget*>(watched);
    if (widget == nullptr || widget->window() != window_ || widget == stop_) {
      return event->type() == QEvent::KeyPress && widget == stop_ && Press(event);
    }
    switch (event->type()) {
      case QEvent::KeyPress:
        Press(event);
        return true;
      case QEvent::ShortcutOverride:  // or the key would be a shortcut's
        event->accept();
        return true;
      case QEvent::Shortcut:
      case QEvent::KeyRelease:
      case QEvent::InputMethod:
      case QEvent::MouseButtonPress:
      case QEvent::MouseButtonRelease:
      case QEvent::MouseButtonDblClick:
      case QEvent::Wheel:
      case QEvent::ContextMenu:
      case QEvent::DragEnter:
      case QEvent::Drop:
        return true;
      default:
        return false;
    }
  }

 private:
  bool Press(QEvent* event) {
    const auto* key = static_cast<QKeyEvent*>(event);
    if (key->keyCombination() == kQuitKey) {
      window_->close();
      return true;
    }
    switch (key->key()) {
      case Qt::Key_Return:
      case Qt::Key_Enter:
      case Qt::Key_Escape:
      case Qt::Key_Space:
        press_();
        break;
      default:
        break;
    }
    return true;
  }

  QWidget *window_, *stop_;
  std::function<void()> press_;
};

// Returns when the bar was dismissed. False for a message that is to be a box.
bool MainWindow::ShowPlaying(const core::Message& message) {
  const auto button = loaded_ ? form_.ShowPlaying(message) : nullptr;
  if (button == nullptr) {
    return false;
  }
  const QPointer<QWidget> focus = QApplication::focusWidget();
  QWidget* stop = binding_.Widget(button);
  BarInput input(this, stop, [this] { Run([this] { form_.stopButton_Click(); }); });
  Draw();
  stop->setFocus(Qt::OtherFocusReason);
  qApp->installEventFilter(&input);
  follow_->start();
  while (form_.playing()) {
    QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
  }
  follow_->stop();
  qApp->removeEventFilter(&input);
  FollowMelody();
  Draw();
  if (focus != nullptr) {
    focus->setFocus(Qt::OtherFocusReason);
  }
  return true;
}

void MainWindow::FollowMelody() {
  const double position = position_ ? position_().value_or(0) : 0;
  if (form_.playing() && form_.FollowPlaying(position)) {
    binding_.Draw();
  }
  for (const BoundControl& bound : binding_.Controls()) {
    auto* view = qobject_cast<MelodyView*>(bound.widget);
    if (view != nullptr && bound.info->sounds != app::Sounding::kNothing) {
      const bool sounds = form_.playing() && form_.sounding == bound.info->sounds;
      view->SetPosition(sounds ? position : -1);
    }
  }
}

// ---- Keys ---------------------------------------------------------------------------------------

// Passes typed text through txtcompoTempo_KeyPress character by character (one key or input method
// event can hold several) and inserts what is accepted.
void MainWindow::TypeTempo(const QString& typed) {
  auto* box = The<QComboBox>(Look::kComboBox, binding_);
  for (const char character : FromQString(typed)) {
    std::int16_t code = static_cast<unsigned char>(character);
    Run([this, &code] { form_.txtcompoTempo_KeyPress(code); });
    if (code != 0) {
      box->lineEdit()->insert(QChar(code));
    }
  }
}

// Keys that type no character (arrows, Backspace, commands) are left to the box.
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

// The box itself shows the text that an input method composes; only what it commits is filtered.
bool MainWindow::FilterTempoText(QInputMethodEvent* event) {
  const QString typed = event->commitString();
  event->setCommitString({}, event->replacementStart(), event->replacementLength());
  TypeTempo(typed);
  return false;
}

// The Down key moves from a line to the list below it.
bool MainWindow::GoToList(const QObject* line, QKeyEvent* event) {
  if (event->key() != Qt::Key_Down) {
    return false;
  }
  const auto found = std::ranges::find(binding_.Controls(), line, &BoundControl::object);
  auto* list = qobject_cast<RowList*>(binding_.Widget(found->info->below));
  list->setFocus(Qt::OtherFocusReason);
  if (list->SelectedRow() < 0) {
    list->setCurrentIndex(list->model()->index(0, 0));
  }
  return true;
}

bool MainWindow::eventFilter(QObject* watched, QEvent* event) {
  const bool search = qobject_cast<QLineEdit*>(watched) != nullptr;
  if (event->type() == QEvent::KeyPress) {
    auto* key = static_cast<QKeyEvent*>(event);
    return search ? GoToList(watched, key) : FilterTempoKey(key);
  }
  if (event->type() == QEvent::InputMethod && !search) {
    return FilterTempoText(static_cast<QInputMethodEvent*>(event));
  }
  return QWidget::eventFilter(watched, event);
}

// Outside dialogs Qt presses the focused button with Space only; this adds Enter.
void MainWindow::keyPressEvent(QKeyEvent* event) {
  const bool enter = event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter;
  auto* button = qobject_cast<QAbstractButton*>(focusWidget());
  if (enter && button != nullptr && !event->isAutoRepeat()) {
    button->click();
  } else {
    QWidget::keyPressEvent(event);
  }
}

void MainWindow::resizeEvent(QResizeEvent* event) {
  QWidget::resizeEvent(event);
  NotePlace();
  QWidget* focus = focusWidget();
  if (loaded_ && pages_.Show(pageDrawn_, width())) {
    SetTabOrder();
    Draw();
    if (focus != nullptr) {
      focus->setFocus(Qt::OtherFocusReason);  // it moved to another parent
    }
  }
}

void MainWindow::closeEvent(QCloseEvent* event) {
  if (program_.busy || form_.playing()) {
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
