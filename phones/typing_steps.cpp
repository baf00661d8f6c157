#include "phones/typing_steps.h"

#include <algorithm>
#include <array>
#include <utility>

#include "core/windows1252.h"
#include "formats/imelody_notation.h"
#include "formats/nokia_composer.h"
#include "formats/note_length.h"
#include "formats/pitch.h"
#include "phones/formats.h"
#include "phones/keypads.h"

namespace tonadex::phones {
namespace {

using namespace core::literals;

// A phone's octaves, from 1. Only iMelody has a number for the fourth, kHighest.
constexpr int kLow = 1, kMiddle = 2, kHighest = 4;

// The octave of a note typed by this group, when the previous note's was `before`.
using OctaveRule = int (*)(std::string_view group, int before);

int Count(std::string_view text, char key) {
  return static_cast<int>(std::ranges::count(text, key));
}

// "*" selects the next octave.
int NokiaOctave(std::string_view group, int before) {
  return (before - kLow + Count(group, '*')) % 3 + kLow;
}

// The number of "1" presses is the octave.
int MotorolaOctave(std::string_view group, int before) {
  const int ones = Count(group, '1');
  return ones == 0 ? before : ones;
}

// Every note has its own octave mark.
int SamsungOctave(std::string_view group, int) {
  constexpr std::array kOctaves = {2, 3, 1};
  return kOctaves[static_cast<std::size_t>(std::min(Count(group, '8'), 2))];
}

// How the groups of a format are interpreted.
struct Rules {
  std::string_view code;
  OctaveRule octave;
  int firstOctave;
  bool display;  // the phone shows each note in composer notation
  bool dots;     // a note's dot is typed, by holding its key or as a separate rest
  bool dotRests;
};

constexpr std::array kRules = std::to_array<Rules>({
    {kKeysCode, NokiaOctave, kLow, true, true, false},
    {"MOTK", MotorolaOctave, kMiddle, false, false, false},
    {"SAM1", SamsungOctave, kMiddle, false, true, true},
    {"SAM2", SamsungOctave, kMiddle, false, false, false},
});

struct DurationName {
  std::string_view duration, name;
};
constexpr DurationName kDurationNames[] = {{"1", "redonda"}, {"2", "blanca"},       {"4", "negra"},
                                           {"8", "corchea"}, {"16", "semicorchea"}, {"32", "fusa"}};

constexpr std::array<std::string_view, kHighest> kOctaveNames = {
    "octava grave", "octava media", "octava aguda", "octava muy aguda"};

constexpr std::string_view kDotRest = "silencio, en lugar del puntillo";

// A note as typed.
struct TypedNote {
  std::string_view duration;
  char letter;
  bool pause, sharp, dotted, dotTyped;
  int octave;  // kLow and up
};

std::string InWords(const TypedNote& note) {
  std::string words;
  if (note.pause) {
    words = "silencio";
  } else if (const auto semitone = formats::Semitone(std::string_view(&note.letter, 1))) {
    words = formats::kSpanishPitches[static_cast<std::size_t>(*semitone)];
  } else {  // the writers repeat the previous note's key
    words = std::string(u8"«"_w) + note.letter + std::string(u8"», que no es una nota"_w);
  }
  words += note.sharp && !note.pause ? " sostenido" : "";
  const auto* name = std::ranges::find(kDurationNames, note.duration, &DurationName::duration);
  if (name == std::end(kDurationNames)) {
    words.append(u8", duración «"_w).append(note.duration).append(u8"»"_w);
  } else {
    words.append(", ").append(name->name);
  }
  if (note.dotted) {
    words += note.dotTyped ? ", con puntillo" : ", con puntillo que no se teclea";
  }
  if (!note.pause) {
    words.append(", ").append(
        kOctaveNames[static_cast<std::size_t>(std::clamp(note.octave, kLow, kHighest) - kLow)]);
  }
  return words;
}

// Adjacent equal keys are one repeated press; "(3)" is 3 held.
std::vector<KeyPress> PressesOf(std::string_view group) {
  std::vector<KeyPress> presses;
  bool hold = false;
  for (const char c : group) {
    if (c == '(' || c == ')') {
      hold = c == '(';
    } else if (!hold && !presses.empty() && presses.back().key == c && !presses.back().hold) {
      ++presses.back().times;
    } else {
      presses.push_back({c, 1, hold});
    }
  }
  return presses;
}

// Cuts a result into steps from the front.
class Cutter {
 public:
  explicit Cutter(std::string_view result) : rest_(result) {}

  std::string_view rest() const { return rest_; }
  TypingStep& CutGroup() {
    const std::size_t end = std::min(rest_.find(' '), rest_.size());
    return Cut(end, std::min(end + 1, rest_.size()));
  }
  TypingStep& Cut(std::size_t end, std::size_t next) {
    TypingStep& step = steps_.emplace_back();
    step.group = rest_.substr(0, end);
    step.after = rest_.substr(end, next - end);
    rest_.remove_prefix(next);
    return step;
  }
  std::vector<TypingStep> Finish() { return std::move(steps_); }

 private:
  std::string_view rest_;
  std::vector<TypingStep> steps_;
};

std::vector<TypingStep> GroupSteps(const Rules& rules, std::string_view result,
                                   const core::RTTTLMelody& melody) {
  Cutter cutter(result);
  int octave = rules.firstOctave, index = 0;
  for (const core::RTTTLNote& note : melody.Notes) {
    if (cutter.rest().empty() || note.Note.empty()) {
      break;
    }
    TypingStep& step = cutter.CutGroup();
    const bool pause = core::IsPause(note);
    octave = rules.octave(step.group, octave);
    step.note = index++;
    step.words = InWords({note.Duration, note.Note.front(), pause, note.Note.ends_with('#'),
                          note.Dotted, rules.dots && !pause, octave});
    if (rules.display) {
      formats::AppendComposerNote(note, static_cast<std::size_t>(octave), step.display);
      if (pause && note.Dotted) {  // a pause's key is not held
        step.display.erase(step.display.rfind('.'), 1);
      }
    }
    if (rules.dotRests && note.Dotted && !pause && !cutter.rest().empty()) {
      const int dotted = step.note;
      TypingStep& rest = cutter.CutGroup();
      rest.note = dotted;
      rest.words = kDotRest;
    }
  }
  while (!cutter.rest().empty()) {
    cutter.CutGroup();
  }
  std::vector<TypingStep> steps = cutter.Finish();
  for (TypingStep& step : steps) {
    step.keys = PressesOf(step.group);
  }
  return steps;
}

// The octave number after "*" before an iMelody note; 3 is the phone's lowest octave. The only
// number with two digits is 10, and no other begins with 1.
std::string_view OctaveDigits(std::string_view text) {
  return text.substr(std::min<std::size_t>(1, text.size()), text.substr(1, 1) == "1" ? 2 : 1);
}

TypingStep& CutIMelodyNote(Cutter& cutter, const core::NoteCodes& note, const formats::Band& band) {
  constexpr int kLowNumber = 3;
  const bool pause = note.letter == 'p';
  const bool sharp = note.IsSharp() && !band.dotted;  // as in the writer
  const auto& [key, rest] = formats::kIMelodyDurations[band.length];
  const std::string_view digits = OctaveDigits(cutter.rest());
  std::size_t size = rest.size();
  if (!pause) {
    size = std::string_view("*").size() + digits.size() + (sharp ? 1 : 0) + 1 + key.size();
  }
  size = std::min(size + (note.dotted ? 1 : 0), cutter.rest().size());
  const int octave = digits.size() == 1 ? digits.front() - '0' - kLowNumber + kLow : kHighest;
  TypingStep& step = cutter.Cut(size, size);
  step.words = InWords(
      {formats::kDurationTexts[band.length], note.letter, pause, sharp, note.dotted, true, octave});
  return step;
}

std::vector<TypingStep> IMelodySteps(std::string_view result, const core::RTTTLMelody& melody) {
  Cutter cutter(result);
  formats::Tempo125Bands bands(melody.Beats);
  int index = 0;
  for (const core::NoteCodes& note : melody.Notes.Codes()) {
    if (cutter.rest().empty() || note.pitchSize == 0) {
      break;
    }
    CutIMelodyNote(cutter, note, bands[note]).note = index++;
  }
  if (!cutter.rest().empty()) {
    cutter.Cut(cutter.rest().size(), cutter.rest().size());
  }
  std::vector<TypingStep> steps = cutter.Finish();
  for (TypingStep& step : steps) {
    for (const char sign : step.group) {
      step.keys.push_back({sign});
    }
  }
  return steps;
}

}  // namespace

std::vector<TypingStep> TypingSteps(std::string_view model, std::string_view result,
                                    const core::RTTTLMelody& melody) {
  const Keypad* keypad = FindKeypad(model);
  if (keypad == nullptr) {
    return {};
  }
  const auto rules = std::ranges::find(kRules, keypad->code, &Rules::code);
  return rules == kRules.end() ? IMelodySteps(result, melody) : GroupSteps(*rules, result, melody);
}

std::string PressWords(const KeyPress& press) {
  if (press.hold) {
    return std::string(u8"mantén "_w) + std::to_string(kHoldSeconds) + " s";
  }
  return press.times > 1 ? std::string(u8"×"_w) + std::to_string(press.times) : "";
}

std::string KeysInWords(const TypingStep& step) {
  std::string words;
  for (const KeyPress& press : step.keys) {
    const std::string how = PressWords(press);
    words.append(words.empty() ? "" : ", ").append(1, press.key);
    words.append(how.empty() ? "" : " ").append(how);
  }
  return words;
}

}  // namespace tonadex::phones
