#pragma once

#include <filesystem>
#include <memory>
#include <string>
#include <string_view>

#include "app/rich_text.h"

namespace tonadex::platform {

// Where to print. If both are empty: on the default printer, or without one to a new PDF in the
// user's documents folder, whose name a message box shows.
struct PrintTarget {
  std::string printer;        // name, Windows-1252
  std::filesystem::path pdf;  // takes precedence over the printer; replaced when it exists
};

// The rich-text control on Qt. Keeps the source byte for byte and parses it only for printing.
// SelPrint throws a device failure when the named printer does not exist, the spooler refuses the
// job or the PDF cannot be written; it needs a QGuiApplication.
class QtRichTextBox : public app::RichTextBox {
 public:
  explicit QtRichTextBox(PrintTarget target = {}) : target_(std::move(target)) {}

  void LoadFile(const std::filesystem::path& file) override;
  std::string TextRTF() const override { return source_; }
  void SetTextRTF(std::string_view source) override { source_ = source; }
  void SelPrint(std::string_view name) override;
  void PrintPages(const app::Paper& paper, std::string_view name) override;

 private:
  PrintTarget target_;
  std::string source_;
};

// The same for a program without windows: starts Qt itself and needs no display.
std::unique_ptr<app::RichTextBox> MakeWindowlessRichTextBox(PrintTarget target);

}  // namespace tonadex::platform
