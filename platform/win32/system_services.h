#pragma once

#include <windows.h>

#include <filesystem>
#include <functional>
#include <string>

#include "app/shell_services.h"

namespace tonadex::platform {

// What the services need from the program's windows. Both may be empty.
struct WindowHooks {
  std::function<void()> draw;  // draws the model on the window
  std::function<void(const std::filesystem::path&)> openHelp;
};

// The system services of the Windows program.
class SystemServices : public app::ShellServices {
 public:
  explicit SystemServices(WindowHooks& hooks, std::filesystem::path programFolder);

  std::filesystem::path ProgramFolder() const override { return folder_; }
  std::string TempPath() const override;
  // Also checks the attributes, because Windows itself creates a hidden desktop.ini in folders.
  bool IsHidden(const std::filesystem::path& file) const override;
  void SetTopMost(std::intptr_t window) override;
  void DoEvents() override;
  void Beep() override;
  void CopyText(std::string_view text) override;
  void OpenFolder(const std::filesystem::path& folder) override;
  void OpenHelp(const std::filesystem::path& file) override;
  void OpenFile(const std::filesystem::path& file) override;
  void ShowInFolder(const std::filesystem::path& file) override;
  // Ends the message loop.
  void End() override;

 private:
  WindowHooks& hooks_;
  std::filesystem::path folder_;
};

// Copies Windows-1252 text to the clipboard.
void PutOnClipboard(std::string_view text);

// Handles pending paint messages. Pending keyboard and mouse input is passed to `dropped` (may be
// empty) and discarded, and timers do not fire: no event handler starts while another one runs.
void PumpPaint(const std::function<void(const MSG&)>& dropped = {});

}  // namespace tonadex::platform
