#pragma once

#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "core/rtttl.h"

// The file formats to which a melody can be converted, for the windows and the terminal. Texts are
// Windows-1252.
namespace tonadex::phones {

// Returns the bytes for a parsed melody and appends to `notices` what the format cannot hold of it.
using FileWriter = std::string (*)(const core::RTTTLMelody& melody, std::string& notices);

struct FileFormat {
  std::string_view name;       // in the terminal: "ott"
  std::string_view extension;  // without the full stop
  std::string_view label;      // in dialogs: "Nokia Smart Messaging"
  std::string_view code;       // of the phones' format (phones/formats.h); "" when it has none
  FileWriter write;            // nullptr: the result for phones with this code
  std::string_view limits;     // what it loses of any melody, "" for nothing: "sin puntillos"
};

std::span<const FileFormat> FileFormats();

// The format of this name; nullptr for an unknown one. The printed sheet is not in the table.
const FileFormat* FindFileFormat(std::string_view name);
// The format of a model of the catalogue, compared exactly; nullptr for an unknown model.
const FileFormat* FileFormatOf(std::string_view model);

// One format of each extension: the model's, then the first ones of the other extensions.
std::vector<const FileFormat*> FormatsToSave(std::string_view model);

struct MelodyFileBytes {
  std::string bytes;
  std::string notices;  // lines ended by CR LF; those of phone formats include instructions
};

// The file for an RTTTL text with "#" for sharps; shows no message. Errors: core::RunTimeError with
// a Spanish sentence for a melody that cannot be read or that the format cannot hold.
MelodyFileBytes WriteMelodyFile(const FileFormat& format, std::string_view rtttl);

}  // namespace tonadex::phones
