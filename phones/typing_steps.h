#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "core/rtttl.h"

// Splits a result of keys into steps for someone who types it into the phone. Strings are
// Windows-1252.
namespace tonadex::phones {

struct KeyPress {
  char key;           // a character of the result, see KeypadKey::signs
  int times = 1;      // successive presses
  bool hold = false;  // held down for kHoldSeconds instead

  friend bool operator==(const KeyPress&, const KeyPress&) = default;
};

inline constexpr int kHoldSeconds = 3;

// One group of a result: a note, a pause, or the rest that replaces a note's dot.
struct TypingStep {
  std::string group;           // as in the result: "(3)9**"; "" for a note without keys
  std::string after;           // what follows it in the result: a blank or nothing
  std::vector<KeyPress> keys;  // in order
  int note = -1;               // index in RTTTLMelody::Notes, -1 for none
  std::string words;           // "mi, corchea, con puntillo, octava aguda", "silencio, negra"
  std::string display;         // "4.e1" as a Nokia's composer shows it; "" for other phones
};

// The steps of `result`, which is the conversion of `melody` (as the conversion left it) for
// `model`. Group and `after` of all steps, joined, are always the result, character for character;
// a group without a note in the melody has no words. Empty for a model without a keypad
// (FindKeypad). iMelody notes are one step each, and their letters are single key presses. The
// words describe the note as typed: iMelody's with the duration that is written, and with a remark
// for a dot that the phone cannot take.
std::vector<TypingStep> TypingSteps(std::string_view model, std::string_view result,
                                    const core::RTTTLMelody& melody);

// How to press a key: "×3", "mantén 3 s", "" for one short press.
std::string PressWords(const KeyPress& press);

// All keys of a step: "3 mantén 3 s, 9, * ×2".
std::string KeysInWords(const TypingStep& step);

}  // namespace tonadex::phones
