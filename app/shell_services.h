#pragma once

#include <cstdint>
#include <filesystem>
#include <string>
#include <string_view>

namespace tonadex::app {

// Small services of the system and the shell.
class ShellServices {
 public:
  virtual ~ShellServices() = default;
  // The folder that holds ver.dat, print.rtf, the help and melodias/. Never the current directory.
  virtual std::filesystem::path ProgramFolder() const = 0;
  // The temporary folder with its trailing separator, Windows-1252.
  virtual std::string TempPath() const = 0;
  // Hidden files are not listed.
  virtual bool IsHidden(const std::filesystem::path& file) const {
    return file.filename().native().starts_with('.');
  }
  // Keeps the window above all others without moving or resizing it.
  virtual void SetTopMost(std::intptr_t window) = 0;
  // Draws what handlers have changed and handles pending paint events. No other handler starts.
  virtual void DoEvents() = 0;
  virtual void Beep() = 0;
  // Puts a text of Windows-1252 on the clipboard.
  virtual void CopyText(std::string_view text) = 0;
  // Shows a folder in the system's own window.
  virtual void OpenFolder(const std::filesystem::path& folder) = 0;
  // Opens the help file at its start. The viewer reports a missing file.
  virtual void OpenHelp(const std::filesystem::path& file) = 0;
  // Open a file with the program that the user has for it, or its folder. Silent when it fails.
  virtual void OpenFile(const std::filesystem::path& file) = 0;
  virtual void ShowInFolder(const std::filesystem::path& file) = 0;
  // Ends the program at once.
  virtual void End() = 0;
};

}  // namespace tonadex::app
