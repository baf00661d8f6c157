#pragma once

#include <nlohmann/json.hpp>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "core/dispatcher/conversion.h"
#include "platform/message_box.h"

namespace tonadex::cli {

// A conversion and the message boxes that it showed. Texts are Windows-1252.
struct ConversionRecord {
  std::optional<core::ConversionPage> page;  // none where a page would keep what it showed
  std::vector<platform::Message> messages;   // in order
};

// Converts one stored line from a fresh record. `file` answers the save dialog; without it the
// dialog counts as cancelled.
ConversionRecord ConvertLine(core::RTTTLMelody& melody, std::string_view line,
                             std::string_view model, std::string_view row,
                             const std::optional<std::string>& file);

// Whether it gave no page or complained: the messages of an error carry no icon or an exclamation
// mark.
bool HasErrors(const ConversionRecord& record);

// {"titulo":…,"resultado":…,"avisos":…,"tempo":…,"mensajes":[…]}; texts are empty where there is
// no page.
nlohmann::ordered_json ToJson(const ConversionRecord& record);

}  // namespace tonadex::cli
