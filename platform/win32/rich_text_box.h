#pragma once

#include <windows.h>

#include "app/rich_text.h"

namespace tonadex::platform {

// The sheet in a rich-text control that is never shown, and its way to the default printer.
class RichEditBox : public app::RichTextBox {
 public:
  RichEditBox() = default;
  ~RichEditBox() override;
  RichEditBox(const RichEditBox&) = delete;
  RichEditBox& operator=(const RichEditBox&) = delete;

  void LoadFile(const std::filesystem::path& file) override;
  std::string TextRTF() const override;
  void SetTextRTF(std::string_view source) override;
  void SelPrint() override;

 private:
  HWND Control();

  HWND control_ = nullptr;  // made when first needed
};

}  // namespace tonadex::platform
