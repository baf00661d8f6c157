#pragma once

#include <windows.h>

#include <commctrl.h>
#include <shellapi.h>

#include <functional>
#include <memory>
#include <optional>
#include <vector>

#include "app/form1.h"
#include "platform/win32/system_services.h"
#include "shell/win32/binding.h"
#include "shell/win32/message_boxes.h"
#include "shell/win32/pages.h"
#include "shell/win32/theme.h"

namespace tonadex::shell {

// The files dropped on a window; frees the handle.
std::vector<std::filesystem::path> DroppedFiles(HDROP dropped);

// The main window: Form1's model in native controls.
class MainWindow {
 public:
  // How long the melody has been playing, ms; nullopt when nothing plays.
  using Position = std::function<std::optional<double>()>;

  MainWindow(app::Program& program, platform::WindowHooks& hooks, MessageBoxes::Owner& boxes,
             Position position);
  ~MainWindow();
  MainWindow(const MainWindow&) = delete;
  MainWindow& operator=(const MainWindow&) = delete;

  // Runs Form_Load and shows the window.
  void Load();
  // Adds melody files to the repertoire; none is no change.
  void Open(const std::vector<std::filesystem::path>& files);
  HWND window() const { return window_; }
  // Handles the keyboard before a message is dispatched; true when the message is done.
  bool Translate(MSG& message);
  // Paints while a request runs, and gives the request up when the user asks for it.
  void Wait();
  void Navigate(app::WebViewId view, std::string_view url);
  // Answers the window's messages.
  std::optional<LRESULT> Handle(UINT message, WPARAM wide, LPARAM data);

 private:
  std::optional<LRESULT> HandleLook(UINT message, WPARAM wide, LPARAM data);
  // The only place that starts handlers of the model.
  void Run(const Binding::Handler& handler);

  void RestorePlace();
  void NotePlace();
  void Draw();
  void LayOutPage();
  void ScrollTo(int top);
  void ScrollBy(WPARAM request);
  void ShowFocus();
  void FocusPage();
  void Focus(HWND window);
  void DrawBusy();
  void FollowMelody();
  bool ShowPlaying(const core::Message& message);
  bool BarInput(const MSG& message, HWND stop);
  void Paint();
  LRESULT ColourOf(HDC context, HWND control, UINT message) const;
  void ChangeTheme(UINT dotsPerInch);
  TTTOOLINFOW Tool(UINT_PTR id, UINT flags = 0) const;  // of a tooltip
  void AddTooltips();
  void DrawHints();

  bool Shortcut(const MSG& message);
  bool EnterKey();
  bool GoToList();
  void ShowMenu(const BoundControl& list, POINT place);
  std::optional<LRESULT> TellTip(NMHDR& about);
  bool GoToField(WPARAM mnemonic);
  void FilterTempo();
  void GiveUpBy(const MSG& input);
  void Close();

  app::Program& program_;
  platform::WindowHooks& hooks_;
  MessageBoxes::Owner& boxes_;
  Position position_;
  app::Form1 form_;
  Theme theme_;
  HWND window_ = nullptr;
  std::unique_ptr<Binding> binding_;
  std::vector<Frame> frames_;
  HWND focus_ = nullptr;
  std::wstring tip_;  // that the system reads
  HWND tips_ = nullptr;
  std::int16_t pageDrawn_ = app::kNoPage;
  int scrolled_ = 0;  // by as many pixels, where the page is higher than the window
  bool layingOut_ = false;
  bool loaded_ = false;
  bool pumping_ = false;  // only painting messages are handled
};

}  // namespace tonadex::shell
