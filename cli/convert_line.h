#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "phones/conversion.h"

namespace tonadex::cli {

// Converts a melody that LoadMelody filled. `file` answers the save dialog; without it the dialog
// counts as cancelled. Texts are Windows-1252.
phones::Conversion ConvertLoaded(core::RTTTLMelody& melody, std::string_view model,
                                 std::string_view row, const std::optional<std::string>& file);

// Appends a conversion as members of a JSON object,
// `"titulo":…,"resultado":…,"avisos":…,"tempo":…,"mensajes":[…]`; texts are empty where there is no
// page.
class ConversionJson {
 public:
  void Append(std::string& json, const phones::Conversion& conversion);

 private:
  // The shortest notices of late, which all begin with: the format's instructions.
  std::string notices_, noticesJson_;
};

}  // namespace tonadex::cli
