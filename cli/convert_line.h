#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "phones/conversion.h"
#include "phones/typing_steps.h"

namespace tonadex::cli {

// Converts one stored line from a fresh record. `file` answers the save dialog; without it the
// dialog counts as cancelled. Texts are Windows-1252.
phones::Conversion ConvertLine(core::RTTTLMelody& melody, std::string_view line,
                               std::string_view model, std::string_view row,
                               const std::optional<std::string>& file);

// What to press for it; nothing where there is no page. `melody` is as the conversion left it.
using Steps = std::vector<phones::TypingStep>;
Steps StepsOf(const phones::Conversion& conversion, std::string_view model,
              const core::RTTTLMelody& melody);

// One object of JSON, not closed yet: {"titulo":…,"resultado":…,"avisos":…,"tempo":…,
// "mensajes":[…]; texts are empty where there is no page. With the name of a file (UTF-8),
// "fichero" and "modelo" stand in front.
std::string ConversionJson(const phones::Conversion& conversion, std::string_view file = {},
                           std::string_view model = {});

}  // namespace tonadex::cli
