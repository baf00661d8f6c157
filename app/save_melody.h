#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <string_view>

#include "app/file_dialog.h"

// "Guardar como…": a melody as a file of any format. Texts are Windows-1252.
namespace tonadex::app {

// Asks where to save an RTTTL text and as what, the format of the phone's `model` first, and writes
// the file. A box says before what the file cannot hold, or why there is none. Returns the file,
// if it was written.
std::optional<std::filesystem::path> SaveMelodyAs(FileDialogs& dialogs, std::string_view rtttl,
                                                  std::string_view model);

// "El Vals, para Nokia, tempo 140": the tempo is set on the phone by hand. Leaves out what is "".
std::string SheetTitle(std::string_view rtttl, std::string_view phone, std::string_view tempo);

// The melody on a sheet, with what the model needs to be typed, as the bytes of a PDF file.
std::string SheetPdf(std::string_view rtttl, std::string_view model);

// The proposal for a file of a melody, without extension: the row's stem, where characters that a
// file name cannot hold become "_".
std::string FileStem(std::string_view row);

// The extension in lower case; "" for a name without one.
std::string ExtensionOf(const std::filesystem::path& file);

}  // namespace tonadex::app
