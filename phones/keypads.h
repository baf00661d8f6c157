#pragma once

#include <span>
#include <string_view>

// The keys of the phones whose result is keys to press, as data for a drawing. Texts are
// Windows-1252.
namespace tonadex::phones {

struct KeypadKey {
  char label;              // printed on the key: "1" to "9", "0", "*", "#", or an arrow as results
                           // write it: "<", "^", ">"
  std::string_view signs;  // what of a result is typed with it: its label first, then letters
  std::string_view word;   // what it does in the composer: "do", "más corta"; "" for nothing
  int row, column;         // its place, from 0
};

struct Keypad {
  std::string_view code;  // of the format, see phones/formats.h
  int rows, columns;
  std::span<const KeypadKey> keys;  // row by row
};

// The keypad of a model, compared exactly; nullptr when its result is nothing to type.
const Keypad* FindKeypad(std::string_view model);

// The key for a character of the result; nullptr when the keypad has none.
const KeypadKey* FindKey(const Keypad& keypad, char sign);

}  // namespace tonadex::phones
