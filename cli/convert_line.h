#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "phones/conversion.h"
#include "phones/typing_steps.h"

namespace tonadex::cli {

// Converts a melody loaded with LoadMelody. `file` answers the save dialog; without it the dialog
// counts as cancelled. Strings are Windows-1252.
phones::Conversion ConvertLoaded(core::RTTTLMelody& melody, std::string_view model,
                                 std::string_view row, const std::optional<std::string>& file);

// The typing steps of a conversion, none without a page. `melody` is as the conversion left it.
using Steps = std::vector<phones::TypingStep>;
Steps StepsOf(const phones::Conversion& conversion, std::string_view model,
              const core::RTTTLMelody& melody);

// Appends a conversion as members of a JSON object,
// `"titulo":…,"resultado":…,"avisos":…,"tempo":…,"mensajes":[…]`; the strings are empty without a
// page.
class ConversionJson {
 public:
  void Append(std::string& json, const phones::Conversion& conversion);

 private:
  // The format's instructions, with which all notices begin: the shortest notices seen so far.
  // Escaping them once saves time.
  std::string notices_, noticesJson_;
};

}  // namespace tonadex::cli
