#include "shell/win32/desktop.h"

#include <windows.h>

#include <commctrl.h>
#include <ole2.h>

#include <memory>
#include <utility>

#include "platform/common/program_folder.h"
#include "platform/http/background_get.h"
#include "platform/http/http_client.h"
#include "platform/win32/file_dialogs.h"
#include "platform/win32/mci_sequencer.h"
#include "platform/win32/rich_text_box.h"
#include "platform/win32/system_services.h"
#include "platform/win32/windows_registry.h"
#include "shell/common/desktop_server.h"
#include "shell/common/on_first_use.h"
#include "shell/win32/drawing.h"
#include "shell/win32/help_window.h"
#include "shell/win32/main_window.h"
#include "shell/win32/message_boxes.h"
#include "shell/win32/splash.h"

namespace tonadex::shell {
namespace {

// Initialises the system's libraries for its lifetime.
class SystemLibraries {
 public:
  SystemLibraries() {
    OleInitialize(nullptr);
    const INITCOMMONCONTROLSEX controls{sizeof controls, ICC_WIN95_CLASSES | ICC_STANDARD_CLASSES};
    InitCommonControlsEx(&controls);
    const Gdiplus::GdiplusStartupInput input;
    Gdiplus::GdiplusStartup(&drawing_, &input, nullptr);
  }
  ~SystemLibraries() {
    Gdiplus::GdiplusShutdown(drawing_);
    OleUninitialize();
  }
  SystemLibraries(const SystemLibraries&) = delete;
  SystemLibraries& operator=(const SystemLibraries&) = delete;

 private:
  ULONG_PTR drawing_ = 0;
};

// Forwards to the window's two browsers once the window exists.
class WindowWebViews : public app::WebViews {
 public:
  explicit WindowWebViews(std::unique_ptr<MainWindow>& window) : window_(window) {}
  void Navigate(app::WebViewId view, std::string_view url) override {
    if (window_ != nullptr) {
      window_->Navigate(view, url);
    }
  }

 private:
  std::unique_ptr<MainWindow>& window_;
};

// Members in order of dependency.
struct Desktop {
  Desktop(const std::string& argument, std::vector<std::filesystem::path> toOpen)
      : folder(platform::PrepareProgramFolder()),
        shell(hooks, folder),
        server(argument, folder, platform::InstalledData()),
        program({registry, fileDialogs, sequencer, http, newest, webViews, richText, shell},
                server.Configured()),
        splash(program, [this] { OpenWindow(); }),
        files(std::move(toOpen)) {
    hooks.openHelp = [this](const std::filesystem::path& file) { help.Get().Open(file); };
  }

  void OpenWindow() {
    program.serverBase = server.Address();
    window = std::make_unique<MainWindow>(program, hooks, boxOwner,
                                          [this] { return sequencer.PositionMs(); });
    window->Load();
    splash.Close();
    window->Open(files);
  }

  bool Translate(MSG& message) {
    return (window != nullptr && window->Translate(message)) ||
           (help.Made() != nullptr && help.Made()->Translate(message));
  }

  SystemLibraries libraries;
  std::filesystem::path folder;
  platform::WindowHooks hooks;
  platform::WindowsRegistry registry;
  platform::WindowsFileDialogs fileDialogs;
  platform::MciSequencer sequencer;
  std::unique_ptr<MainWindow> window;
  platform::HttpClient http{{.pump =
                                 [this] {
                                   if (window != nullptr) {
                                     window->Wait();
                                   }
                                   app::CheckGivenUp(program);
                                 },
                             .progress = {}}};
  platform::HttpBackgroundGet newest;
  WindowWebViews webViews{window};
  platform::RichEditBox richText;
  platform::SystemServices shell;
  MessageBoxes::Owner boxOwner;
  MessageBoxes boxes{boxOwner};
  core::ScopedMessageSink sink{boxes};
  DesktopServer server;
  app::Program program;
  Splash splash;
  std::vector<std::filesystem::path> files;
  OnFirstUse<HelpWindow> help;
};

}  // namespace

int RunDesktop(const std::string& server, std::vector<std::filesystem::path> files) {
  Desktop desktop(server, std::move(files));
  desktop.splash.Start();
  MSG message;
  while (GetMessageW(&message, nullptr, 0, 0) > 0) {
    if (!desktop.Translate(message)) {
      TranslateMessage(&message);
      DispatchMessageW(&message);
    }
  }
  desktop.window.reset();  // it uses members declared after it
  return desktop.program.exitCode;
}

}  // namespace tonadex::shell
