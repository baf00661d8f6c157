#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "app/file_dialog.h"

namespace tonadex::app {

// The results of ShowSave and ShowOpen.
inline constexpr std::int16_t kDialogCancelled = -1;  // cancelled, with CancelError set
inline constexpr std::int16_t kDialogClosed = 0;      // a choice, or cancelled without CancelError

// The file dialogs as a control with properties. Texts are Windows-1252.
class clsOpenSave {
 public:
  explicit clsOpenSave(FileDialogs& dialogs) : dialogs_(dialogs) {}

  std::string FileExt;  // the chosen file's extension, without its full stop
  std::int32_t hWnd = 0;
  std::int32_t MaxFileSize = 260;
  std::string InitDir = "C:\\";
  std::int32_t Flags = 0;
  std::int16_t FilterIndex = 1;
  std::string FileTitle;
  std::string FileName;  // the initial name; the full path after a choice
  std::string DialogTitle;
  std::string DefaultExt;
  bool CancelError = false;

  // Pairs of description and pattern, separated by "|" in the argument and by NULs when stored.
  void SetFilter(std::string_view filter);
  const std::string& Filter() const { return filter_; }

  // Show the dialog and refresh the properties after a choice. Errors: invalid argument when
  // FileName is longer than MaxFileSize + 1; no dialog opens then.
  std::int16_t ShowSave();
  std::int16_t ShowOpen();

 private:
  using Dialog = bool (FileDialogs::*)(FileDialogRecord&);
  std::int16_t Show(Dialog dialog);

  FileDialogs& dialogs_;
  std::string filter_{"All Files (*.*)\0*.*\0", 20};
};

}  // namespace tonadex::app
