// Results of keys, taken apart and typed into the phones' composers.
#include "phones/typing_steps.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <fstream>
#include <random>
#include <utility>

#include "core/text.h"
#include "data/shelf.h"
#include "phones/catalogue.h"
#include "phones/conversion.h"
#include "phones/keypads.h"
#include "tests/core/test_melody.h"

namespace tonadex::phones {
namespace {

using Steps = std::vector<TypingStep>;

struct Typed {
  std::string result;
  Steps steps;
};

Typed ConvertAndTakeApart(const std::string& rtttl, std::string_view model) {
  const test::Boxes boxes;
  NoSaveFile ask;
  core::RTTTLMelody melody = test::MelodyOf(rtttl);
  const auto page = ConvertSelectedMelody(melody, model, "", ask).page;
  const std::string result = page ? page->result : "";
  return {result, TypingSteps(model, result, melody)};
}

std::vector<std::string> ShelfMelodies() {
  std::vector<std::string> melodies;
  std::ifstream table(TONADEX_SHELF, std::ios::binary);
  for (const data::ShelfRow& row : data::ReadShelf(table)) {
    melodies.push_back(row.rtttl);
  }
  return melodies;
}

// Items drawn from `parts`, which stand in each item's order.
std::vector<std::string> Generated(const std::vector<std::vector<std::string>>& parts) {
  std::mt19937 random(2002);
  const auto pick = [&](const std::vector<std::string>& from) {
    return from[random() % from.size()];
  };
  std::vector<std::string> melodies(150, "x:d=4,o=5,b=125:");
  for (std::string& melody : melodies) {
    for (std::size_t notes = 1 + random() % 50; notes > 0; --notes) {
      for (const std::vector<std::string>& part : parts) {
        melody += pick(part);
      }
      melody += ',';
    }
  }
  return melodies;
}

// What three octaves of a phone hold.
std::vector<std::string> PlayableMelodies() {
  return Generated({{"", "1", "2", "4", "8", "16", "32"},
                    {"c", "c#", "d", "d#", "e", "f", "f#", "g", "g#", "a", "a#", "b", "p", "p"},
                    {"", "", "."},
                    {"4", "5", "6"}});
}

// What parses, whether or not a phone can play it.
std::vector<std::string> OddMelodies() {
  return Generated({{"", "2", "16", "3", "64", "81"},
                    {"c", "h", "p", "p#", "x", "*", "r", "9", "0", "(", ")", "e#", "#", "."},
                    {"", "#", ".", ".#"},
                    {"", "1", "4", "5", "6", "8"}});
}

// One model of each format that is typed.
constexpr std::array<std::string_view, 5> kModels = {" Pulsaciones", " Motorola Pulsaciones Tipo 1",
                                                     " Motorola iMelody", " Pulsaciones tipo 1",
                                                     " Pulsaciones tipo 2"};

std::string Joined(const Steps& steps) {
  std::string all;
  for (const TypingStep& step : steps) {
    all += step.group + step.after;
  }
  return all;
}

TEST(TypingSteps, JoinedAreTheResult) {
  std::vector<std::string> melodies = OddMelodies();
  melodies.push_back("x:d=4,o=10,b=125:c8,c8,c8,c7,c7,c7,c,c#");  // iMelody keys with an octave 10
  for (const auto& more : {ShelfMelodies(), PlayableMelodies()}) {
    melodies.insert(melodies.end(), more.begin(), more.end());
  }
  int converted = 0;
  for (const std::string& melody : melodies) {
    for (const std::string_view model : kModels) {
      const auto [result, steps] = ConvertAndTakeApart(melody, model);
      ASSERT_EQ(Joined(steps), result) << melody << model;
      converted += result.empty() ? 0 : 1;
      for (const TypingStep& step : steps) {
        std::string pressed;
        for (const auto& [key, times, hold] : step.keys) {
          pressed +=
              hold ? std::string{'(', key, ')'} : std::string(static_cast<std::size_t>(times), key);
        }
        ASSERT_TRUE(pressed == step.group || step.group == "()" + pressed) << step.group << model;
        ASSERT_FALSE(step.words.empty()) << melody << model;
      }
    }
  }
  EXPECT_GT(converted, 500);
}

TEST(TypingSteps, SpeakOfEveryNoteInItsTurn) {
  for (const std::string& melody : PlayableMelodies()) {
    for (const std::string_view model : kModels) {
      int last = -1;
      for (const TypingStep& step : ConvertAndTakeApart(melody, model).steps) {
        const bool dot = step.words == "silencio, en lugar del puntillo";
        ASSERT_EQ(step.note, last + (dot ? 0 : 1)) << melody << model;
        last = step.note;
        for (const KeyPress& press : step.keys) {
          ASSERT_NE(FindKey(*FindKeypad(model), press.key), nullptr) << press.key << model;
        }
      }
      ASSERT_EQ(last + 1, std::ranges::count(melody, ',') - 2) << melody << model;
    }
  }
}

TEST(TypingSteps, TakeAnyTextApartInLinearTime) {
  const core::RTTTLMelody melody = test::ParsedMelody("c,p");
  for (const std::string_view model : kModels) {
    for (const std::string& text : {test::Repeated("1 ", 100'000), std::string("(("),
                                    std::string(" "), std::string("*"), std::string()}) {
      EXPECT_EQ(Joined(TypingSteps(model, text, melody)), text) << model;
    }
  }
  EXPECT_EQ(TypingSteps(" Pulsaciones", test::Repeated("1 ", 100'000), melody).size(), 100'000u);
  EXPECT_TRUE(TypingSteps(" Compositor", "4c1 ", melody).empty());
  EXPECT_EQ(std::ranges::count_if(CatalogueRows(),
                                  [](const auto& row) { return FindKeypad(row.model) != nullptr; }),
            14);
}

// A note or pause ('p') as a composer holds it. Octaves are 1 to 3.
struct Held {
  char letter;
  bool sharp = false, dotted = false;
  int octave = 0, duration = 4;
};

using HeldNotes = std::vector<Held>;

// In the notation of the Nokia composer.
std::string Notation(const HeldNotes& notes) {
  std::string text;
  for (const Held& note : notes) {
    text += std::to_string(note.duration) + (note.dotted ? "." : "");
    text += note.letter == 'p' ? "-"
                               : (note.sharp ? "#" : "") + std::string(1, note.letter) +
                                     std::to_string(note.octave);
    text += ' ';
  }
  return text;
}

HeldNotes ReadNotation(std::string_view text) {
  HeldNotes notes;
  for (std::size_t end = text.find(' '); end != std::string_view::npos; end = text.find(' ')) {
    const std::string token(text.substr(0, end));
    text.remove_prefix(end + 1);
    const bool pause = token.ends_with('-');
    notes.push_back({pause ? 'p' : token[token.size() - 2], core::Contains(token, "#"),
                     core::Contains(token, "."), pause ? 0 : token.back() - '0', std::stoi(token)});
  }
  return notes;
}

constexpr std::string_view kScale = "cdefgab";  // on the keys 1 to 7

// The keys act at once and on the last note; the next one begins with its duration and octave, but
// not with a pause's duration.
HeldNotes TypeIntoNokia(const Steps& steps) {
  HeldNotes notes;
  int octave = 1, duration = 4;
  const auto press = [&](char key, bool hold) {
    if (key >= '0' && key <= '7') {
      notes.push_back(key == '0' ? Held{'p', false, hold, 0, duration}
                                 : Held{kScale[static_cast<std::size_t>(key - '1')], false, hold,
                                        octave, duration});
      return;
    }
    Held& last = notes.back();
    last.sharp = last.sharp != (key == '#');
    last.duration = key == '8'   ? std::min(last.duration * 2, 32)
                    : key == '9' ? std::max(last.duration / 2, 1)
                                 : last.duration;
    last.octave = key == '*' ? last.octave % 3 + 1 : last.octave;
    octave = last.letter == 'p' ? octave : last.octave;
    duration = last.letter == 'p' ? duration : last.duration;
  };
  for (const TypingStep& step : steps) {
    for (const KeyPress& each : step.keys) {
      for (int i = 0; i < each.times; ++i) {
        press(each.key, each.hold);
      }
    }
  }
  return notes;
}

// "1" as often as the octave's number comes before the letter, "0" as often as the length's (short,
// medium, long) behind it; both hold for the notes that follow. The user waits between groups, so
// that two letters of one key do not run into one another.
HeldNotes TypeIntoMotorola(const Steps& steps) {
  constexpr std::array<std::string_view, 3> kLetters = {"abc", "def", "gp"};  // on 2, 3 and 4
  constexpr std::array kLengths = {0, 16, 8, 2};
  HeldNotes notes;
  int octave = 2, length = 1;
  for (const TypingStep& step : steps) {
    Held note{'?'};
    for (const auto& [key, times, hold] : step.keys) {
      const auto count = static_cast<std::size_t>(times);
      octave = key == '1' ? times : octave;
      length = key == '0' ? times : length;
      note.sharp = note.sharp || key == '7';
      if (key >= '2' && key <= '4') {
        note.letter = kLetters[static_cast<std::size_t>(key - '2')].at(count - 1);
      }
    }
    note.octave = octave;
    note.duration = kLengths.at(static_cast<std::size_t>(length));
    notes.push_back(note);
  }
  return notes;
}

// Each note begins as a quarter in the middle octave; "8" and the key of the durations go round.
HeldNotes TypeIntoSamsung(const Steps& steps, char durationKey,
                          const std::array<int, 5>& durations) {
  constexpr std::array kOctaves = {2, 3, 1};
  constexpr std::array kPauses = {0, 4, 8, 16, 1};  // of type 2, each ">"
  HeldNotes notes;
  for (const TypingStep& step : steps) {
    Held note{'?', false, false, kOctaves[0], durations[0]};
    for (const auto& [key, times, hold] : step.keys) {
      const auto count = static_cast<std::size_t>(times);
      if (key >= '1' && key <= '7') {
        note.letter = kScale[static_cast<std::size_t>(key - '1')];
      } else if (key == '0') {
        note.letter = 'p';
      } else if (key == '>') {
        note = {'p', false, false, 0, kPauses.at(count)};
      } else if (key == '8') {
        note.octave = kOctaves.at(count);
      } else if (key == durationKey) {
        note.duration = durations.at(count);
      } else {
        note.sharp = true;
      }
    }
    notes.push_back(note);
  }
  return notes;
}

HeldNotes TypeIntoSamsung1(const Steps& steps) {
  return TypeIntoSamsung(steps, '*', {4, 2, 1, 16, 8});
}

HeldNotes TypeIntoSamsung2(const Steps& steps) {
  return TypeIntoSamsung(steps, '<', {4, 8, 16, 2, 1});
}

// iMelody signs: octave (3 to 5), sharp, letter, duration 0 (whole) to 5, dot; "r" is a rest.
HeldNotes TypeIntoIMelody(const Steps& steps) {
  HeldNotes notes;
  Held next{'?'};
  bool octave = false;
  for (const TypingStep& step : steps) {
    for (const KeyPress& press : step.keys) {
      if (octave) {
        next.octave = press.key - '2';
      } else if (press.key == '#') {
        next.sharp = true;
      } else if (press.key == '.') {
        notes.back().dotted = true;
      } else if (press.key >= '0' && press.key <= '5') {
        next.duration = 1 << (press.key - '0');
        notes.push_back(std::exchange(next, Held{'?'}));
      } else if (press.key != '*') {
        next.letter = press.key == 'r' ? 'p' : press.key;
      }
      octave = press.key == '*';
    }
  }
  return notes;
}

// What a format cannot say, each as what it makes of the notes.
using Loss = HeldNotes (*)(const Held& note);

// A pause's key is never held.
HeldNotes PausesLoseTheirDots(const Held& note) {
  Held typed = note;
  typed.dotted = note.dotted && note.letter != 'p';
  return {typed};
}
HeldNotes DotsAreLost(const Held& note) {
  Held typed = note;
  typed.dotted = false;
  return {typed};
}
HeldNotes LengthsAreShortMediumOrLong(const Held& note) {
  Held typed = note;
  typed.duration = note.duration > 8 ? 16 : note.duration > 2 ? 8 : 2;
  return {typed};
}
HeldNotes ThirtySecondsAreSixteenths(const Held& note) {
  Held typed = note;
  typed.duration = std::min(note.duration, 16);
  return {typed};
}
// Half the note's length; of a sixteenth a sixteenth, being the shortest there is.
HeldNotes NotesDotsAreRests(const Held& note) {
  Held typed = note;
  typed.dotted = false;
  const Held rest{'p', false, false, 0, std::min(note.duration * 2, 16)};
  return note.dotted ? HeldNotes{typed, rest} : HeldNotes{typed};
}
HeldNotes HalfRestsAreWholeOnes(const Held& note) {
  Held typed = note;
  typed.duration = note.letter == 'p' && note.duration == 2 ? 1 : note.duration;
  return {typed};
}
// In the bands of lengths that are dotted; a dotted whole note falls into a plain one.
HeldNotes DottedSharpsLoseTheSharp(const Held& note) {
  Held typed = note;
  typed.sharp = note.sharp && (!note.dotted || note.duration == 1);
  return {typed};
}
// The written rests do not add up to the pause; its dot is the last one's.
HeldNotes RestsAreOtherRests(const Held& note) {
  if (note.letter != 'p') {
    return {note};
  }
  HeldNotes rests;
  for (const int duration : note.duration == 1   ? std::vector{4}
                            : note.duration == 2 ? std::vector{8, 8}
                            : note.duration == 4 ? std::vector{16, 8}
                            : note.duration == 8 ? std::vector{16, 16}
                                                 : std::vector{16}) {
    rests.push_back({'p', false, false, 0, duration});
  }
  rests.back().dotted = note.dotted;
  return rests;
}

struct Phone {
  std::string_view model;
  HeldNotes (*type)(const Steps& steps);
  std::vector<Loss> losses;
};

HeldNotes Lose(const HeldNotes& notes, const std::vector<Loss>& losses) {
  HeldNotes left = notes;
  for (const Loss lose : losses) {
    HeldNotes before = std::exchange(left, {});
    for (const Held& note : before) {
      for (const Held& kept : lose(note)) {
        left.push_back(kept);
      }
    }
  }
  return left;
}

const Phone kPhones[] = {
    {kModels[0], TypeIntoNokia, {PausesLoseTheirDots}},
    {kModels[1], TypeIntoMotorola, {DotsAreLost, LengthsAreShortMediumOrLong}},
    {kModels[2], TypeIntoIMelody, {DottedSharpsLoseTheSharp, RestsAreOtherRests}},
    {kModels[3],
     TypeIntoSamsung1,
     {PausesLoseTheirDots, ThirtySecondsAreSixteenths, NotesDotsAreRests}},
    {kModels[4],
     TypeIntoSamsung2,
     {DotsAreLost, ThirtySecondsAreSixteenths, HalfRestsAreWholeOnes}}};

// Typed in, the keys give the notes of the composer notation but for what the format cannot say,
// and nothing is called a loss that is none. All at tempo 125, which iMelody's durations are
// brought to.
TEST(TypingSteps, GiveTheNotesWhenTypedIntoThePhone) {
  std::vector<std::string> melodies = PlayableMelodies();
  for (const std::string& melody : ShelfMelodies()) {
    const std::size_t tempo = melody.find("b=") + 2, end = melody.find(':', tempo);
    melodies.push_back(melody.substr(0, tempo) + "125" + melody.substr(end));
  }
  for (const auto& [model, type, losses] : kPhones) {
    std::vector<int> needed(losses.size());
    for (const std::string& melody : melodies) {
      const HeldNotes notes = ReadNotation(ConvertAndTakeApart(melody, " Compositor").result);
      const std::string typed = Notation(type(ConvertAndTakeApart(melody, model).steps));
      ASSERT_EQ(typed, Notation(Lose(notes, losses))) << melody << model;
      for (std::size_t i = 0; i < losses.size(); ++i) {
        std::vector<Loss> others = losses;
        others.erase(others.begin() + static_cast<std::ptrdiff_t>(i));
        needed[i] += typed == Notation(Lose(notes, others)) ? 0 : 1;
      }
    }
    EXPECT_TRUE(std::ranges::all_of(needed, [](int times) { return times > 0; })) << model;
  }
}

// What a Nokia must show, note by note, is the other result for the same melody, but for the dots
// of pauses: their key is not held.
TEST(TypingSteps, ShowTheComposerNotation) {
  for (const auto& melodies : {PlayableMelodies(), ShelfMelodies(), OddMelodies()}) {
    for (const std::string& melody : melodies) {
      std::string shown;
      for (const TypingStep& step : ConvertAndTakeApart(melody, kModels[0]).steps) {
        shown += step.display + step.after;
      }
      std::string notation = ConvertAndTakeApart(melody, " Compositor").result;
      ASSERT_EQ(shown, core::ReplaceAll(notation, ".-", "-")) << melody;
    }
  }
}

}  // namespace
}  // namespace tonadex::phones
