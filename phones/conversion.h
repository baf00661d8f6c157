#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "core/message_box.h"
#include "core/rtttl.h"

// Converts a melody for the chosen phone.
namespace tonadex::phones {

// The save dialog of formats whose result is a file.
struct SaveRequest {
  std::string DefaultExt;
  std::string DialogTitle;
  std::string Filter;  // description and pattern pairs separated by "|"
  std::int16_t FilterIndex = 2;
  bool CancelError = true;
};

// Chooses the file to write: with a dialog that opens in the program folder, or by a command line
// option.
class SaveFileQuestion {
 public:
  virtual ~SaveFileQuestion() = default;
  // The chosen path as text, nullopt when the user cancelled.
  virtual std::optional<std::string> AskSaveFile(const SaveRequest& request) = 0;
};

// Cancels every question: for results that are only looked at.
class NoSaveFile : public SaveFileQuestion {
 public:
  std::optional<std::string> AskSaveFile(const SaveRequest&) override { return std::nullopt; }
};

enum class Outcome {
  kConverted,
  kIncomplete,     // converted, but a message says what could not be read or placed
  kNoModel,        // no such model; the page invites the user to choose one
  kCancelled,      // no file was chosen
  kRefused,        // the format cannot hold such a melody
  kCannotConvert,  // the melody cannot be read, or a run-time failure occurred
  kDiskFailure,    // the file could not be written
};

// The result page, Windows-1252.
struct ConversionPage {
  std::string title;    // lbltextresult
  std::string result;   // textresultado
  std::string notices;  // Textavisos: instructions and, line by line, the writer's warnings
  std::string tempo;    // texttempo: as in the header, maybe not a number
};

struct Conversion {
  Outcome outcome = Outcome::kCannotConvert;
  std::optional<ConversionPage> page;   // after the first three outcomes; otherwise the result
                                        // page stays unchanged
  std::vector<core::Message> messages;  // in the order shown
};

// Converts melody.Text (sharps already restored) for a model of the catalogue, compared exactly.
// `row` is the melody's row in the list, for the title. The melody is parsed in place, and parsed
// again when the format has an octave range and a second parse could have another result; each
// parse reports its errors. Messages also go to the calling thread's sink as they arise. A run-time
// failure is reported in a message box ("No se puede convertir la melodía: …").
Conversion ConvertSelectedMelody(core::RTTTLMelody& melody, std::string_view model,
                                 std::string_view row, SaveFileQuestion& ask);

// Converts a text without messages or questions; `melody` is the record as the conversion left it.
std::optional<ConversionPage> ConvertQuietly(core::RTTTLMelody& melody, std::string_view rtttl,
                                             std::string_view model);

}  // namespace tonadex::phones
