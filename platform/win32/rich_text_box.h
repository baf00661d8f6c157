#pragma once

#include <windows.h>

#include "app/rich_text.h"

namespace tonadex::platform {

// A rich-text control that is never shown and prints on the default printer.
class RichEditBox : public app::RichTextBox {
 public:
  RichEditBox() = default;
  ~RichEditBox() override;
  RichEditBox(const RichEditBox&) = delete;
  RichEditBox& operator=(const RichEditBox&) = delete;

  void LoadFile(const std::filesystem::path& file) override;
  std::string TextRTF() const override;
  void SetTextRTF(std::string_view source) override;
  void SelPrint(std::string_view name) override;
  void PrintPages(const app::Paper& paper, std::string_view name) override;

 private:
  HWND Control();

  HWND control_ = nullptr;  // created on first use
};

}  // namespace tonadex::platform
