#include "app/print_sheet.h"

#include "app/save_melody.h"
#include "core/message_box.h"
#include "core/text.h"
#include "files/paths.h"
#include "files/write.h"
#include "phones/formats.h"

namespace tonadex::app {
namespace {

void Fill(RichTextBox& box, std::string_view placeholder, std::string_view value) {
  std::string source = box.TextRTF();
  box.SetTextRTF(core::ReplaceAll(source, placeholder, value));
}

}  // namespace

void PrintSheet(RichTextBox& box, const std::filesystem::path& sheetTemplate,
                const SheetValues& values) {
  box.LoadFile(sheetTemplate);
  Fill(box, "cambiatitulo", values.title);
  Fill(box, "cambiainstrucciones", values.instructions);
  Fill(box, "cambiatempo", values.tempo);
  Fill(box, "cambiamelodia", values.melody);
  Fill(box, "cambiamodelo", phones::FormatLabel(values.model));
  box.SelPrint(FileStem(values.title));
}

void SaveSheet(const std::filesystem::path& file, std::string_view bytes) {
  std::error_code ignored;  // a missing folder shows in the next step
  std::filesystem::create_directories(file.parent_path(), ignored);
  const auto saved = files::MakeUnderFreeName(
      file, [&](const std::filesystem::path& free) { return files::Create(free, bytes); });
  if (!saved) {
    files::FailToWrite(file);
  }
  core::MsgBox(std::string(kNoPrinter) + files::TextFromPath(*saved), core::Icon::kInformation);
}

}  // namespace tonadex::app
