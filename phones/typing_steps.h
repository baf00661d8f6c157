#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "core/rtttl.h"

// A result of keys taken apart for someone who types it into the phone. Texts are Windows-1252.
namespace tonadex::phones {

struct KeyPress {
  char key;           // a character of the result, see FindKey
  int times = 1;      // presses, one after the other
  bool hold = false;  // held down for kHoldSeconds instead

  friend bool operator==(const KeyPress&, const KeyPress&) = default;
};

inline constexpr int kHoldSeconds = 3;

// One group of a result: a note or pause, or the rest that stands for a note's dot.
struct TypingStep {
  std::string group;           // as the result writes it: "(3)9**"; "" for a note that needs no key
  std::string after;           // what follows it in the result: a blank or nothing
  std::vector<KeyPress> keys;  // in the order of pressing
  int note = -1;               // index in RTTTLMelody::Notes, -1 for none
  std::string words;           // "mi, corchea, con puntillo, octava aguda", "silencio, negra"
  std::string display;         // what a Nokia's composer shows for this note then, "4.e1"; else ""
};

// The steps of a result that this model was given for this melody, which is as the conversion left
// it. Group and what follows it, step after step, are the result, character for character, whatever
// the melody is; groups that it has no note for have no words. Empty for a model without a keypad
// (FindKeypad). iMelody notes are split note by note and their letters are typed as such, once
// each. The words are those of the note as typed: iMelody's have the duration that is written, and
// a dot that a phone cannot take is named so.
std::vector<TypingStep> TypingSteps(std::string_view model, std::string_view result,
                                    const core::RTTTLMelody& melody);

// How to press: "×3", "mantén 3 s", "" for one short press.
std::string PressWords(const KeyPress& press);

// "3 mantén 3 s, 9, * ×2".
std::string KeysInWords(const TypingStep& step);

}  // namespace tonadex::phones
