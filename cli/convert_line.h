#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "phones/conversion.h"

namespace tonadex::cli {

// Converts one stored line from a fresh record. `file` answers the save dialog; without it the
// dialog counts as cancelled. Texts are Windows-1252.
phones::Conversion ConvertLine(core::RTTTLMelody& melody, std::string_view line,
                               std::string_view model, std::string_view row,
                               const std::optional<std::string>& file);

// One line of JSON: {"titulo":…,"resultado":…,"avisos":…,"tempo":…,"mensajes":[…]}; texts are empty
// where there is no page. With the name of a file (UTF-8), "fichero" and "modelo" stand in front.
std::string ConversionJson(const phones::Conversion& conversion, std::string_view file = {},
                           std::string_view model = {});

}  // namespace tonadex::cli
