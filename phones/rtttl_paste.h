#pragma once

#include <cstddef>
#include <string_view>
#include <vector>

// Finds the melodies in a pasted text, and the parts of each, whatever they lack.
namespace tonadex::phones {

// One "key=value" of a header.
struct Field {
  std::size_t start = 0, end = 0;  // offsets in the text
  char key = 0;                    // d, o, b, or the letter of an extension
  std::string_view value;
};

// Whether the field is one that RTTTL has: duration, octave or tempo.
bool IsSetting(const Field& field);

// The parts of a melody, views of the pasted text.
struct PastedMelody {
  std::string_view name;  // before the header
  std::string_view header;
  std::vector<Field> fields;
  std::vector<std::string_view> lines;  // with notes
  std::string_view whole;               // from the name to the last note
};

// The melodies of a text in Windows-1252, in order, with lines ended by "\n". Where no header is
// found, each line with a colon begins one. Some may turn out to have no notes.
std::vector<PastedMelody> FindMelodies(std::string_view text);

// Whether the item means at least one note.
bool IsNote(std::string_view item);

// Whether the character is a digit or a letter, accented ones included.
bool IsAlphanumeric(char c);

}  // namespace tonadex::phones
