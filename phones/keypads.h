#pragma once

#include <span>
#include <string_view>

// The keypads of the phones whose result is keys to press, as data for drawing. Strings are
// Windows-1252.
namespace tonadex::phones {

struct KeypadKey {
  char label;              // on the key: "1" to "9", "0", "*", "#", or an arrow as in results: "<",
                           // "^", ">"
  std::string_view signs;  // characters of a result typed with it: its label, then letters
  std::string_view word;   // its function in the composer: "do", "más corta"; "" for none
  int row, column;         // 0-based
};

struct Keypad {
  std::string_view code;  // Format::code
  int rows, columns;
  std::span<const KeypadKey> keys;  // row by row
};

// The keypad of a model, compared exactly; nullptr when its result is not keys to press.
const Keypad* FindKeypad(std::string_view model);

// The model that gives the keys for typing what `model` gives: the Nokia's keys for what its
// composer shows, otherwise the model itself.
std::string_view TypedModel(std::string_view model);

// The key for a character of the result; nullptr when there is none.
const KeypadKey* FindKey(const Keypad& keypad, char sign);

}  // namespace tonadex::phones
