#include "shell/qt/services/qt_services.h"

#include <QApplication>
#include <QClipboard>
#include <QDesktopServices>
#include <QDir>
#include <QFileDialog>
#include <QKeyEvent>
#include <QMessageBox>
#include <QShortcut>
#include <QStandardPaths>
#include <QUrl>
#include <QWindow>

#include "files/paths.h"

#include "shell/qt/text.h"
#include "shell/qt/widgets/web_pane.h"

namespace tonadex::shell {
namespace {

QMessageBox::Icon BoxIcon(core::Icon icon) {
  switch (icon) {
    case core::Icon::kInformation:
      return QMessageBox::Information;
    case core::Icon::kExclamation:
      return QMessageBox::Warning;
    case core::Icon::kNone:
      break;
  }
  return QMessageBox::NoIcon;
}

// "description NUL pattern NUL … NUL NUL" as the toolkit's list of name filters.
QStringList NameFilters(const std::string& pairs) {
  const QStringList parts = ToQString(pairs).split(QChar(u'\0'), Qt::SkipEmptyParts);
  QStringList filters;
  for (qsizetype i = 0; i + 1 < parts.size(); i += 2) {
    const QString pattern = QString(parts[i + 1]).replace(';', ' ');
    const QString words = parts[i].section('(', 0, 0).trimmed();
    filters << (words.isEmpty() ? pattern : QStringLiteral("%1 (%2)").arg(words, pattern));
  }
  return filters;
}

bool RunDialog(QFileDialog::AcceptMode mode, app::FileDialogRecord& record, QWidget* owner) {
  QFileDialog dialog(owner, ToQString(record.lpstrTitle), ToQString(record.lpstrInitialDir));
  dialog.setAcceptMode(mode);
  dialog.setFileMode(mode == QFileDialog::AcceptSave ? QFileDialog::AnyFile
                                                     : QFileDialog::ExistingFile);
  const QStringList filters = NameFilters(record.lpstrFilter);
  dialog.setNameFilters(filters);
  if (record.nFilterIndex >= 1 && record.nFilterIndex <= filters.size()) {
    dialog.selectNameFilter(filters[record.nFilterIndex - 1]);
  }
  dialog.setDefaultSuffix(ToQString(record.lpstrDefExt));
  const std::string name = record.lpstrFile.substr(0, record.lpstrFile.find('\0'));
  if (!name.empty()) {
    dialog.selectFile(ToQString(name));
  }
  if (dialog.exec() != QDialog::Accepted || dialog.selectedFiles().isEmpty()) {
    return false;
  }
  const std::filesystem::path chosen = dialog.selectedFiles().constFirst().toStdU16String();
  record.lpstrFile = files::TextFromPath(chosen);
  record.lpstrFileTitle = files::TextFromPath(chosen.filename());
  record.lpstrInitialDir = files::TextFromPath(chosen.parent_path());
  const qsizetype filter = filters.indexOf(dialog.selectedNameFilter());
  if (filter >= 0) {
    record.nFilterIndex = static_cast<std::int32_t>(filter) + 1;
  }
  return true;
}

bool IsInput(const QEvent& event) {
  switch (event.type()) {
    case QEvent::Shortcut:
    case QEvent::InputMethod:
    case QEvent::DragEnter:
    case QEvent::Drop:
      return true;
    default:
      return event.isInputEvent();
  }
}

}  // namespace

// Discards the user's input and lets every other event pass.
class Repainting::InputFilter : public QObject {
 public:
  explicit InputFilter(const Repainting& owner) : owner_(owner) {}
  bool eventFilter(QObject*, QEvent* event) override {
    // While Esc is a shortcut of the window, it arrives as ShortcutOverride without a key press.
    if (event->type() == QEvent::KeyPress || event->type() == QEvent::ShortcutOverride) {
      const auto* key = static_cast<QKeyEvent*>(event);
      if (key->key() == Qt::Key_Escape && owner_.escape) {
        owner_.escape();
      } else if (key->keyCombination() == kQuitKey && owner_.quit) {
        owner_.quit();
      }
    }
    return IsInput(*event);
  }

 private:
  const Repainting& owner_;
};

Repainting::Repainting() : filter_(std::make_unique<InputFilter>(*this)) {}
Repainting::~Repainting() = default;

void Repainting::Once(Input input) {
  if (active_) {
    return;
  }
  active_ = true;
  qApp->installEventFilter(filter_.get());
  QCoreApplication::processEvents(input == Input::kKept ? QEventLoop::ExcludeUserInputEvents
                                                        : QEventLoop::AllEvents);
  qApp->removeEventFilter(filter_.get());
  active_ = false;
}

void QtMessageBoxes::Show(const core::Message& message) {
  if (hooks_.draw) {
    hooks_.draw();
  }
  if (hooks_.showInWindow && hooks_.showInWindow(message)) {
    return;
  }
  QMessageBox box(BoxIcon(message.icon), ToQString(message.title), {}, QMessageBox::Ok,
                  hooks_.window);
  box.setTextFormat(Qt::PlainText);
  box.setText(ToQStringLines(message.text));
  // Ctrl+C copies the message.
  QObject::connect(new QShortcut(QKeySequence::Copy, &box), &QShortcut::activated, &box,
                   [&box] { QApplication::clipboard()->setText(box.text()); });
  box.exec();
}

bool QtFileDialogs::GetSaveFileName(app::FileDialogRecord& record) {
  return RunDialog(QFileDialog::AcceptSave, record, hooks_.window);
}

bool QtFileDialogs::GetOpenFileName(app::FileDialogRecord& record) {
  return RunDialog(QFileDialog::AcceptOpen, record, hooks_.window);
}

std::optional<app::SaveChoice> QtFileDialogs::AskSaveAs(std::string_view title,
                                                        std::string_view name,
                                                        std::span<const std::string> kinds) {
  const QDir folder(QStandardPaths::writableLocation(QStandardPaths::DocumentsLocation));
  QStringList filters;
  for (const std::string& kind : kinds) {
    filters << ToQString(kind);
  }
  QString chosen;
  const QString file = QFileDialog::getSaveFileName(hooks_.window, ToQString(title),
                                                    folder.filePath(ToQString(name)),
                                                    filters.join(QStringLiteral(";;")), &chosen);
  if (file.isEmpty()) {
    return std::nullopt;
  }
  const auto kind = std::max<qsizetype>(0, filters.indexOf(chosen));
  return app::SaveChoice{file.toStdU16String(), static_cast<std::size_t>(kind)};
}

// A folder that does not exist would be proposed as the name of a file.
std::vector<std::filesystem::path> QtFileDialogs::AskOpen(std::string_view title,
                                                          const std::filesystem::path& folder) {
  const QStringList starts = {
      QString::fromStdU16String(folder.u16string()), folder.empty() ? opened_ : QString(),
      QStandardPaths::writableLocation(QStandardPaths::DocumentsLocation), QDir::homePath()};
  const auto start = std::ranges::find_if(
      starts, [](const QString& path) { return !path.isEmpty() && QDir(path).exists(); });
  const QStringList files = QFileDialog::getOpenFileNames(
      hooks_.window, ToQString(title), start == starts.end() ? QString() : *start);
  if (folder.empty() && !files.isEmpty()) {
    opened_ = QFileInfo(files.constFirst()).path();
  }
  std::vector<std::filesystem::path> paths;
  for (const QString& file : files) {
    paths.emplace_back(file.toStdU16String());
  }
  return paths;
}

QtShellServices::QtShellServices(WindowHooks& hooks, Repainting& repainting,
                                 std::filesystem::path folder, std::string tempPath)
    : hooks_(hooks),
      repainting_(repainting),
      folder_(std::move(folder)),
      tempPath_(std::move(tempPath)) {}

void QtShellServices::SetTopMost(std::intptr_t window) {
  const QWidgetList widgets = QApplication::topLevelWidgets();
  for (QWidget* widget : widgets) {
    // QWidget::setWindowFlag would hide the window and show it again.
    if (widget->windowHandle() != nullptr &&
        static_cast<std::intptr_t>(widget->winId()) == window) {
      widget->windowHandle()->setFlag(Qt::WindowStaysOnTopHint);
    }
  }
}

void QtShellServices::DoEvents() {
  if (hooks_.draw) {
    hooks_.draw();
  }
  repainting_.Once(Repainting::Input::kKept);
}

void QtShellServices::Beep() {
  QApplication::beep();
}

void QtShellServices::CopyText(std::string_view text) {
  QApplication::clipboard()->setText(ToQStringLines(text));
}

void QtShellServices::OpenFolder(const std::filesystem::path& folder) {
  QDesktopServices::openUrl(QUrl::fromLocalFile(QString::fromStdU16String(folder.u16string())));
}

void QtShellServices::OpenHelp(const std::filesystem::path& file) {
  if (hooks_.openHelp) {
    hooks_.openHelp(file);
  }
}

void QtShellServices::OpenFile(const std::filesystem::path& file) {
  QDesktopServices::openUrl(QUrl::fromLocalFile(QString::fromStdU16String(file.u16string())));
}

void QtShellServices::ShowInFolder(const std::filesystem::path& file) {
  OpenFile(file.parent_path());
}

void QtShellServices::End() {
  const QWidgetList widgets = QApplication::topLevelWidgets();
  for (QWidget* widget : widgets) {
    widget->hide();
  }
  QCoreApplication::quit();
}

void QtWebViews::Navigate(app::WebViewId view, std::string_view url) {
  const auto& pane = view == app::WebViewId::kNavbanner ? hooks_.banner : hooks_.page;
  if (pane != nullptr) {
    pane->Navigate(url);
  }
}

}  // namespace tonadex::shell
