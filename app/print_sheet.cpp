#include "app/print_sheet.h"

#include "app/save_melody.h"
#include "core/text.h"
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

}  // namespace tonadex::app
