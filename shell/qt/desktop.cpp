#include "shell/qt/desktop.h"

#include <QApplication>
#include <QTimer>
#include <utility>

#include "platform/common/program_folder.h"
#include "platform/http/background_get.h"
#include "platform/http/http_client.h"
#include "platform/posix/settings_file.h"
#include "platform/posix/user_folders.h"
#include "platform/qt/rich_text_box.h"
#include "platform/sound/fluid_sequencer.h"
#include "shell/common/desktop_server.h"
#include "shell/common/on_first_use.h"
#include "shell/qt/help/help_window.h"
#include "shell/qt/services/qt_services.h"
#include "shell/qt/splash.h"
#include "shell/qt/window/main_window.h"

namespace tonadex::shell {
namespace {

constexpr int kSplashPaintMs = 200;

}  // namespace

// In the order in which they depend on each other.
struct Desktop::Parts {
  Parts(const std::string& argument, std::vector<std::filesystem::path> toOpen)
      : folder(platform::PrepareProgramFolder()),
        shell(hooks, repainting, folder, platform::PrivateTempFolder()),
        server(argument, folder, platform::InstalledData()),
        program({settings, fileDialogs, sequencer, http, newest, webViews, richText, shell},
                server.Configured()),
        splash(program),
        files(std::move(toOpen)) {
    hooks.openHelp = [this](const std::filesystem::path& file) { help.Get().Open(file); };
  }

  void MakeWindow() {
    if (window != nullptr) {
      return;
    }
    window = std::make_unique<MainWindow>(program, hooks, repainting,
                                          [this] { return sequencer.PositionMs(); });
    window->PrepareBrowser();
  }

  void OpenWindow() {
    program.serverBase = server.Address();
    MakeWindow();
    window->Load();
    window->show();
    splash.close();
    window->Open(files);
  }

  std::filesystem::path folder;
  WindowHooks hooks;
  Repainting repainting;
  platform::SettingsFile settings{platform::SettingsFile::DefaultPath()};
  QtFileDialogs fileDialogs{hooks};
  platform::FluidSequencer sequencer;
  platform::HttpClient http{{.pump =
                                 [this] {
                                   repainting.Once(Repainting::Input::kLost);
                                   app::CheckGivenUp(program);
                                 },
                             .progress = {}}};
  platform::HttpBackgroundGet newest;
  QtWebViews webViews{hooks};
  platform::QtRichTextBox richText;
  QtShellServices shell;
  QtMessageBoxes boxes{hooks};
  core::ScopedMessageSink sink{boxes};
  DesktopServer server;
  app::Program program;
  Splash splash;
  std::vector<std::filesystem::path> files;
  std::unique_ptr<MainWindow> window;
  OnFirstUse<HelpWindow> help;
};

Desktop::Desktop(const std::string& server, std::vector<std::filesystem::path> files)
    : parts_(std::make_unique<Parts>(server, std::move(files))) {}
Desktop::~Desktop() = default;

int Desktop::Run() {
  QObject::connect(&parts_->splash, &Splash::Finished, [this] { parts_->OpenWindow(); });
  parts_->splash.Start();
  // Loads the browser and builds the window after the splash has been painted.
  QTimer::singleShot(kSplashPaintMs, &parts_->splash, [this] { parts_->MakeWindow(); });
  const int code = QApplication::exec();
  return parts_->program.exitCode != 0 ? parts_->program.exitCode : code;
}

}  // namespace tonadex::shell
