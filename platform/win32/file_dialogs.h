#pragma once

#include "app/file_dialog.h"

namespace tonadex::platform {

// The common file dialogs.
class WindowsFileDialogs : public app::FileDialogs {
 public:
  bool GetSaveFileName(app::FileDialogRecord& record) override;
  bool GetOpenFileName(app::FileDialogRecord& record) override;
  // Owned by the active window.
  std::vector<std::filesystem::path> AskOpen(std::string_view title) override;
  std::optional<std::filesystem::path> AskSaveAs(std::string_view title, std::string_view name,
                                                 std::string_view filter) override;
};

}  // namespace tonadex::platform
