#pragma once

#include "platform/file_dialog.h"

namespace tonadex::platform {

// The common dialogs, fed from the record field by field.
class WindowsFileDialogs : public FileDialogs {
 public:
  bool GetSaveFileName(FileDialogRecord& record) override;
  bool GetOpenFileName(FileDialogRecord& record) override;
  // Owned by the active window.
  std::optional<std::filesystem::path> AskSaveAs(std::string_view title, std::string_view name,
                                                 std::string_view filter) override;
};

}  // namespace tonadex::platform
