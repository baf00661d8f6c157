#pragma once

#include <windows.h>

#include <filesystem>
#include <functional>
#include <string>

#include "app/shell_services.h"

namespace tonadex::platform {

// What the services need of the program's windows; empty ones are left out.
struct WindowHooks {
  std::function<void()> draw;  // the model onto the window
  std::function<void(const std::filesystem::path&)> openHelp;
};

// The small services, by kernel32 and user32.
class SystemServices : public app::ShellServices {
 public:
  // `programFolder`: that of the executable.
  explicit SystemServices(WindowHooks& hooks, std::filesystem::path programFolder);

  std::filesystem::path ProgramFolder() const override { return folder_; }
  std::string TempPath() const override;
  // By its attributes as well: Windows itself leaves a desktop.ini in folders.
  bool IsHidden(const std::filesystem::path& file) const override;
  void SetTopMost(std::intptr_t window) override;
  void DoEvents() override;
  void Beep() override;
  void CopyText(std::string_view text) override;
  void OpenHelp(const std::filesystem::path& file) override;
  // Leaves the message loop.
  void End() override;

 private:
  WindowHooks& hooks_;
  std::filesystem::path folder_;
};

// A text of Windows-1252.
void PutOnClipboard(std::string_view text);

// Paints what waits to be painted. What the user types and clicks meanwhile is shown to `dropped`
// (may be empty) and lost, and no timer ticks: no handler starts while another runs.
void PumpPaint(const std::function<void(const MSG&)>& dropped = {});

}  // namespace tonadex::platform
