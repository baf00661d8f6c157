#pragma once

#include <cstddef>
#include <string_view>

// What the phones accept: one row for each of the catalogue's format codes.
namespace tonadex::phones {

// Notes that a Nokia's composer holds.
inline constexpr std::size_t kComposerNotes = 50;

enum class OctaveRange {
  kAny,      // as written
  kAround,   // `count` from the base octave that the converter chooses for the melody
  kFrom,     // from `lowest` on
  kBetween,  // `count` from `lowest` on
};

// Octaves that a format plays; most writers fold the others onto them.
struct Octaves {
  OctaveRange range;
  int lowest, count;
};

// A conversion under way and its output step, see phones/outputs.h.
struct Job;
enum class Outcome;
using Output = Outcome (*)(Job& job);

enum class Kind {
  kText,
  kKeys,  // a text of keys to press
  kFile,  // asked for while converting; nothing to show
};

// Texts are Windows-1252.
struct Format {
  std::string_view code;
  Output output;
  Kind kind;
  std::string_view extension;  // of a saved result, without its full stop
  Octaves octaves;
  std::size_t noteLimit;         // 0 for none
  std::string_view sheetLabel;   // on the printed sheet
  std::string_view titleSuffix;  // behind "Melodia " and the melody's row
  std::string_view instruction;  // what to do with the result
  std::string_view gets;         // what this phone gets; its notes and octaves follow
  std::string_view limits;       // and then this: begins with a comma
};

// The format of a model text, compared exactly; nullptr when the catalogue does not hold it.
const Format* FindFormat(std::string_view model);

// Whether the model's result is a file, asked for while converting, instead of a text.
bool SavesFile(std::string_view model);

// The label of a stored model on the printed sheet, compared exactly; "" for a model without one.
std::string_view FormatLabel(std::string_view model);

}  // namespace tonadex::phones
