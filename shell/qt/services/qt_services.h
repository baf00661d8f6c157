#pragma once

#include <QPointer>
#include <QWidget>
#include <filesystem>
#include <functional>
#include <memory>
#include <string>

#include "app/file_dialog.h"
#include "app/shell_services.h"
#include "app/web_view.h"
#include "core/message_box.h"

// What the program asks of the desktop, answered by Qt.
namespace tonadex::shell {

class WebPane;

// What the services need of the windows, which are created later. Any may be empty.
struct WindowHooks {
  QPointer<QWidget> window;    // owner of the dialogs
  std::function<void()> draw;  // the model onto the widgets
  // Shows a message in the window until it is dismissed; false for one that is to be a box.
  std::function<bool(const core::Message&)> showInWindow;
  std::function<void(const std::filesystem::path&)> openHelp;
  QPointer<WebPane> page, banner;
};

// The toolkit knows it on some desktops only.
inline constexpr QKeyCombination kQuitKey = Qt::CTRL | Qt::Key_Q;

// Repaints the windows while a handler runs; no other handler starts.
class Repainting {
 public:
  Repainting();
  ~Repainting();
  Repainting(const Repainting&) = delete;
  Repainting& operator=(const Repainting&) = delete;

  enum class Input {
    kKept,  // stays queued until the handler ends
    kLost,  // is discarded: the program was visibly busy
  };
  void Once(Input input);
  // True while Once runs: events must not reach handlers then.
  bool Active() const { return active_; }

  // Esc and Ctrl+Q, the keys that are not lost. The close button of a window is not lost either: it
  // sends the window a close event, as the end of the session does.
  std::function<void()> escape, quit;

 private:
  class InputFilter;
  std::unique_ptr<InputFilter> filter_;
  bool active_ = false;
};

class QtMessageBoxes : public core::MessageSink {
 public:
  explicit QtMessageBoxes(WindowHooks& hooks) : hooks_(hooks) {}
  void Show(const core::Message& message) override;

 private:
  WindowHooks& hooks_;
};

class QtFileDialogs : public app::FileDialogs {
 public:
  explicit QtFileDialogs(WindowHooks& hooks) : hooks_(hooks) {}
  bool GetSaveFileName(app::FileDialogRecord& record) override;
  bool GetOpenFileName(app::FileDialogRecord& record) override;
  std::optional<app::SaveChoice> AskSaveAs(std::string_view title, std::string_view name,
                                           std::span<const std::string> kinds) override;
  std::vector<std::filesystem::path> AskOpen(std::string_view title,
                                             const std::filesystem::path& folder) override;

 private:
  WindowHooks& hooks_;
  QString opened_;  // the folder of the files opened last
};

class QtShellServices : public app::ShellServices {
 public:
  // `folder`: the program folder.
  QtShellServices(WindowHooks& hooks, Repainting& repainting, std::filesystem::path folder,
                  std::string tempPath);

  std::filesystem::path ProgramFolder() const override { return folder_; }
  std::string TempPath() const override { return tempPath_; }
  void SetTopMost(std::intptr_t window) override;
  void DoEvents() override;
  void Beep() override;
  void CopyText(std::string_view text) override;
  void OpenFolder(const std::filesystem::path& folder) override;
  void OpenHelp(const std::filesystem::path& file) override;
  void OpenFile(const std::filesystem::path& file) override;
  void ShowInFolder(const std::filesystem::path& file) override;
  // Closes every window and leaves the event loop.
  void End() override;

 private:
  WindowHooks& hooks_;
  Repainting& repainting_;
  std::filesystem::path folder_;
  std::string tempPath_;
};

class QtWebViews : public app::WebViews {
 public:
  explicit QtWebViews(WindowHooks& hooks) : hooks_(hooks) {}
  void Navigate(app::WebViewId view, std::string_view url) override;

 private:
  WindowHooks& hooks_;
};

}  // namespace tonadex::shell
