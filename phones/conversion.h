#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "core/rtttl.h"
#include "platform/message_box.h"

// From the chosen phone to what it accepts.
namespace tonadex::phones {

// What a writer that saves a file asks of the save dialog.
struct SaveRequest {
  std::string DefaultExt;
  std::string DialogTitle;
  std::string Filter;  // description and pattern pairs separated by "|"
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

enum class Outcome {
  kConverted,
  kIncomplete,     // converted, but a message says what could not be read or placed
  kNoModel,        // no such model: the page asks for one
  kCancelled,      // no file was chosen
  kRefused,        // the format cannot hold such a melody
  kCannotConvert,  // the melody cannot be read, or a run-time failure
  kDiskFailure,    // the file could not be written
};

// What the result page shows, Windows-1252.
struct ConversionPage {
  std::string title;    // lbltextresult
  std::string result;   // textresultado
  std::string notices;  // Textavisos: instructions and, line by line, the writer's findings
  std::string tempo;    // texttempo: the header's text, which need not be a number
};

struct Conversion {
  Outcome outcome = Outcome::kCannotConvert;
  std::optional<ConversionPage> page;       // after the first three outcomes; otherwise the result
                                            // page keeps what it showed
  std::vector<platform::Message> messages;  // that were shown, in order
};

// Converts melody.Text (sharps already restored) for a model of the catalogue, compared exactly.
// `row` is the melody's row in the list and names it in the title. The melody is parsed in place,
// where a format has an octave range even twice; each parse reports its own errors. Messages go to
// the calling thread's sink as they arise. A run-time failure is reported in a message box ("No se
// puede convertir la melodía: …").
Conversion ConvertSelectedMelody(core::RTTTLMelody& melody, std::string_view model,
                                 std::string_view row, SaveFileQuestion& ask);

}  // namespace tonadex::phones
