#pragma once

#include <filesystem>
#include <string>
#include <string_view>

#include "app/picture.h"

namespace tonadex::app {

// The hidden rich-text control that fills and prints the sheet.
class RichTextBox {
 public:
  virtual ~RichTextBox() = default;
  // Loads an RTF file. Throws core::RunTimeError when the file cannot be read.
  virtual void LoadFile(const std::filesystem::path& file) = 0;
  // The whole RTF source, bytes in Windows-1252.
  virtual std::string TextRTF() const = 0;
  virtual void SetTextRTF(std::string_view source) = 0;
  // Prints everything on the default printer. Throws core::RunTimeError when there is none or it
  // fails; a platform that prints to a file instead tells the user where. `name`, Windows-1252, is
  // that of the job and, without extension, of such a file.
  virtual void SelPrint(std::string_view name) = 0;
  // Prints pages in the same way.
  virtual void PrintPages(const Paper& paper, std::string_view name) = 0;
};

}  // namespace tonadex::app
