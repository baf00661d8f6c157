#pragma once

#include <cstddef>
#include <string_view>

// The formats that phones accept, one row for each format code of the catalogue.
namespace tonadex::phones {

// The formats of a Nokia: the keys to press, what it shows for them, and the stored melody
// unchanged.
inline constexpr std::string_view kKeysCode = "NKEY";
inline constexpr std::string_view kComposerCode = "NCOM";
inline constexpr std::string_view kRtttlCode = "NRTLNOMOD";

// Capacity of a Nokia's composer, in notes and pauses.
inline constexpr std::size_t kComposerNotes = 50;

enum class OctaveRange {
  kAny,      // every octave
  kAround,   // `count` octaves from the base octave chosen for the melody; from `lowest` if it is 0
  kFrom,     // `lowest` and higher
  kBetween,  // `count` octaves from `lowest`
};

struct Octaves {
  OctaveRange range;
  int lowest, count;
};

// A running conversion and its output step, see phones/outputs.h.
struct Job;
enum class Outcome;
using Output = Outcome (*)(Job& job);

enum class Kind {
  kText,
  kNotes,  // notes one by one, as a composer shows or takes them
  kKeys,   // a text of keys to press
  kFile,   // written during the conversion; nothing to show
};

// One format. Strings are Windows-1252.
struct Format {
  std::string_view code;
  Output output;
  Kind kind;
  std::string_view extension;    // of a saved result, without the full stop
  Octaves octaves;               // range of the format; most writers fold other octaves into it
  Octaves reported;              // the notices name notes and pauses outside this range; kAny: none
  std::size_t noteLimit;         // 0 for none
  std::string_view sheetLabel;   // on the printed sheet
  std::string_view titleSuffix;  // after "Melodia " and the melody's row
  std::string_view instruction;  // what to do with the result
  std::string_view gets;         // describes the result; the note limit and octaves follow it
  std::string_view limits;       // end of that sentence, begins with a comma
};

// The format of a model text, compared exactly; nullptr when the model is not in the catalogue.
const Format* FindFormat(std::string_view model);

// The format of a code; nullptr for an unknown one.
const Format* FormatOfCode(std::string_view code);

// Whether the model's result is a file instead of text.
bool SavesFile(std::string_view model);

// The label of a stored model on the printed sheet, compared exactly; "" for a model without one.
std::string_view FormatLabel(std::string_view model);

}  // namespace tonadex::phones
