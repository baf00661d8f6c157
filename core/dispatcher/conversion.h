#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "core/rtttl.h"

// From the chosen phone to what it accepts.
namespace tonadex::core {

// What a writer that saves a file asks of the save dialog.
struct SaveRequest {
  std::string DefaultExt;
  std::string DialogTitle;
  std::string Filter;  // description and pattern pairs parted by "|"
  std::int16_t FilterIndex = 2;
  bool CancelError = true;
};

// Whoever can be asked for the file to write (a dialog that opens in the program folder, a command
// line's option).
class SaveFileQuestion {
 public:
  virtual ~SaveFileQuestion() = default;
  // The chosen path as text, none when the user cancelled.
  virtual std::optional<std::string> AskSaveFile(const SaveRequest& request) = 0;
};

// What the result page shows, Windows-1252.
struct ConversionPage {
  std::string title;    // lbltextresult
  std::string result;   // textresultado
  std::string notices;  // Textavisos: instructions and, line by line, the writer's findings
  std::string tempo;    // texttempo: the header's text, which need not be a number
};

// Converts melody.Text (sharps already restored) for a model of the catalogue, compared exactly.
// `row` is the melody's row in the list and names it in the title. The melody is parsed in place,
// where a format has an octave range even twice; each parse reports its own errors.
// Gives what to show, none where the page keeps what it showed: a cancelled dialog, a file that was
// not written, or a run-time failure, which is reported in a message box ("No se puede convertir la
// melodía: …"). An unknown model is no failure: its page asks for a model.
std::optional<ConversionPage> ConvertSelectedMelody(RTTTLMelody& melody, std::string_view model,
                                                    std::string_view row, SaveFileQuestion& ask);

// Whether the model's result is a file, asked for while converting, instead of a text.
bool SavesFile(std::string_view model);

}  // namespace tonadex::core
