#pragma once

#include <filesystem>
#include <memory>
#include <string>
#include <string_view>

#include "app/rich_text.h"

namespace tonadex::platform {

// Where a sheet goes. With neither, to the system's default printer; where the system has none, to
// a PDF of a new name in the user's documents folder, and a message box says where.
struct PrintTarget {
  std::string printer;        // name, Windows-1252
  std::filesystem::path pdf;  // goes before the printer; replaced when it exists
};

// The rich-text control on Qt. The source is kept byte for byte and read only to be printed.
// SelPrint throws a device failure when the named printer is not there, the spooler refuses the
// job or the PDF cannot be written; it needs a QGuiApplication.
class QtRichTextBox : public app::RichTextBox {
 public:
  explicit QtRichTextBox(PrintTarget target = {}) : target_(std::move(target)) {}

  void LoadFile(const std::filesystem::path& file) override;
  std::string TextRTF() const override { return source_; }
  void SetTextRTF(std::string_view source) override { source_ = source; }
  void SelPrint() override;

 private:
  PrintTarget target_;
  std::string source_;
};

// For a program without windows: as above, and it starts what Qt needs by itself. Needs no display.
std::unique_ptr<app::RichTextBox> MakeWindowlessRichTextBox(PrintTarget target);

}  // namespace tonadex::platform
