#pragma once

#include "app/file_dialog.h"

namespace tonadex::platform {

// The common file dialogs.
class WindowsFileDialogs : public app::FileDialogs {
 public:
  bool GetSaveFileName(app::FileDialogRecord& record) override;
  bool GetOpenFileName(app::FileDialogRecord& record) override;
  // Owned by the active window.
  std::vector<std::filesystem::path> AskOpen(std::string_view title,
                                             const std::filesystem::path& folder) override;
  std::optional<app::SaveChoice> AskSaveAs(std::string_view title, std::string_view name,
                                           std::span<const std::string> kinds) override;
};

}  // namespace tonadex::platform
