#pragma once

#include <filesystem>
#include <string>
#include <string_view>

#include "app/rich_text.h"
#include "core/windows1252.h"

// The printed sheet: an RTF template with five placeholder words.
namespace tonadex::app {

using namespace core::literals;

inline constexpr std::string_view kSheetTemplate = "print.rtf";  // in the program folder

// The path follows these words.
inline constexpr std::string_view kNoPrinter =
    u8"No hay ninguna impresora predeterminada.\r\nLa hoja está guardada en:\r\n"_w;

// What the sheet shows, Windows-1252.
struct SheetValues {
  std::string title;         // the melody's row
  std::string instructions;  // with the writer's notices
  std::string tempo;
  std::string melody;  // the converted melody
  std::string model;   // the stored phone model
};

// Loads the template, replaces every placeholder and prints. Values go into the RTF source as they
// are, unescaped, one placeholder after the other. Errors: core::RunTimeError when the template
// cannot be read or nothing prints.
void PrintSheet(RichTextBox& box, const std::filesystem::path& sheetTemplate,
                const SheetValues& values);

// What a computer without any printer does: saves the sheet as `file`, or under the next free name,
// in a folder that it makes when it is missing, and says where in a box. Errors:
// core::RunTimeError when the file cannot be written.
void SaveSheet(const std::filesystem::path& file, std::string_view bytes);

}  // namespace tonadex::app
