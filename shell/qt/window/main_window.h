#pragma once

#include <QWidget>
#include <functional>
#include <optional>

#include "app/form1.h"
#include "shell/qt/services/qt_services.h"
#include "shell/qt/window/binding.h"
#include "shell/qt/window/pages.h"

class QTimer;

namespace tonadex::shell {

// The main window: draws Form1, calls its handlers, decides nothing.
class MainWindow : public QWidget {
  Q_OBJECT
 public:
  // Milliseconds since a melody began to sound, nullopt while nothing plays.
  using Position = std::function<std::optional<double>()>;

  MainWindow(app::Program& program, WindowHooks& hooks, Repainting& repainting, Position position);
  ~MainWindow() override;

  // Loads the browser of WebBrowser1, which takes a while. Call before Load.
  void PrepareBrowser() const;
  // Runs Form_Load and draws; call before show().
  void Load();
  // Adds melody files to the repertoire; none is no change.
  void Open(const std::vector<std::filesystem::path>& files);

  app::Form1& Form() { return form_; }
  const Binding& Bound() const { return binding_; }

  // Calls a handler of the model with the user's edits copied in, and draws what it changed.
  void Run(const Binding::Handler& handler);
  void Draw();

 protected:
  void keyPressEvent(QKeyEvent* event) override;
  void closeEvent(QCloseEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;
  void dragEnterEvent(QDragEnterEvent* event) override;
  void dropEvent(QDropEvent* event) override;
  void moveEvent(QMoveEvent* event) override;
  void changeEvent(QEvent* event) override;
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  class BarInput;
  void RestorePlace();
  void NotePlace();
  void ConnectParts();
  void AddShortcuts();
  void SetTabOrder();
  void DrawBusy();
  bool ShowPlaying(const core::Message& message);
  void FollowMelody();
  void FocusPage();
  void Focus(QWidget* widget);
  bool GoToList(const QObject* line, class QKeyEvent* event);
  bool FilterTempoKey(class QKeyEvent* event);
  bool FilterTempoText(class QInputMethodEvent* event);
  void TypeTempo(const QString& typed);

  app::Program& program_;
  WindowHooks& hooks_;
  Repainting& repainting_;
  Position position_;
  app::Form1 form_;
  Binding binding_;
  Pages pages_;
  QTimer* follow_;
  bool loaded_ = false;
  bool waiting_ = false;
  std::int16_t pageDrawn_ = app::kNoPage;
};

}  // namespace tonadex::shell
