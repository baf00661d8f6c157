#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "phones/conversion.h"
#include "phones/typing_steps.h"

namespace tonadex::cli {

// Converts a melody that LoadMelody filled. `file` answers the save dialog; without it the dialog
// counts as cancelled. Texts are Windows-1252.
phones::Conversion ConvertLoaded(core::RTTTLMelody& melody, std::string_view model,
                                 std::string_view row, const std::optional<std::string>& file);

// What to press for it; nothing where there is no page. `melody` is as the conversion left it.
using Steps = std::vector<phones::TypingStep>;
Steps StepsOf(const phones::Conversion& conversion, std::string_view model,
              const core::RTTTLMelody& melody);

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
