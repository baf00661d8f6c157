#pragma once

#include "app/file_dialog.h"

namespace tonadex::platform {

// The common dialogs, fed from the record field by field.
class WindowsFileDialogs : public app::FileDialogs {
 public:
  bool GetSaveFileName(app::FileDialogRecord& record) override;
  bool GetOpenFileName(app::FileDialogRecord& record) override;
};

}  // namespace tonadex::platform
