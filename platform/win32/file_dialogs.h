#pragma once

#include "platform/file_dialog.h"

namespace tonadex::platform {

// The common dialogs, fed from the record field by field.
class WindowsFileDialogs : public FileDialogs {
 public:
  bool GetSaveFileName(FileDialogRecord& record) override;
  bool GetOpenFileName(FileDialogRecord& record) override;
};

}  // namespace tonadex::platform
