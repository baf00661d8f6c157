#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "phones/conversion.h"
#include "phones/typing_steps.h"

namespace tonadex::json {

// Resets the record and sets its text to the line (Windows-1252), sharps restored.
void LoadMelody(core::RTTTLMelody& melody, std::string_view line);

// Converts a melody loaded with LoadMelody. `file` answers the save dialog; without it the dialog
// counts as cancelled. Strings are Windows-1252.
phones::Conversion ConvertLoaded(core::RTTTLMelody& melody, std::string_view model,
                                 std::string_view row, const std::optional<std::string>& file);

// The typing steps of a conversion; empty if it has no result page. `melody` must be the record
// after the conversion.
using Steps = std::vector<phones::TypingStep>;
Steps StepsOf(const phones::Conversion& conversion, std::string_view model,
              const core::RTTTLMelody& melody);

// Appends a conversion as members of a JSON object in UTF-8,
// `"titulo":…,"resultado":…,"avisos":…,"tempo":…,"mensajes":[…]`; without a result page the strings
// are empty.
class ConversionJson {
 public:
  void Append(std::string& json, const phones::Conversion& conversion);

 private:
  // The escaped instructions of the format, with which all its notices begin: the shortest notices
  // seen so far. Escaping them only once saves time.
  std::string notices_, noticesJson_;
};

// Converts melodies, one after the other, to JSON objects: the members of ConversionJson and, with
// `steps`, those of AppendStepsJson.
class LineConverter {
 public:
  // `model` is a model text of the catalogue; `row` is the melodies' row, "" for their names. Both
  // are Windows-1252 and must outlive the converter.
  LineConverter(std::string_view model, std::string_view row, bool steps)
      : model_(model), row_(row), steps_(steps) {}

  // `line`: UTF-8 or Windows-1252; one of more than core::kMaxLineBytes is refused in "mensajes".
  void Append(std::string& json, std::string_view line);

 private:
  phones::Conversion Convert(std::string_view line);

  const std::string_view model_, row_;
  const bool steps_;
  core::RTTTLMelody melody_;
  ConversionJson writer_;
};

}  // namespace tonadex::json
