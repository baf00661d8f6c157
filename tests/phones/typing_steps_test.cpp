// Splits results of keys into steps, and types them into a simulated Nokia composer. That the other
// phones' keys give the melody is tested in tests/import, which reads them back.
#include "phones/typing_steps.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <random>

#include "core/text.h"
#include "phones/catalogue.h"
#include "phones/conversion.h"
#include "phones/keypads.h"
#include "tests/core/test_melody.h"
#include "tests/support/melodies.h"

namespace tonadex::phones::typing_steps_test {

using namespace test;

using Steps = std::vector<TypingStep>;

struct Typed {
  std::string result;
  Steps steps;
};

Typed ConvertAndTakeApart(const std::string& rtttl, std::string_view model) {
  const Boxes boxes;
  NoSaveFile ask;
  core::RTTTLMelody melody = MelodyOf(rtttl);
  const auto page = ConvertSelectedMelody(melody, model, "", ask).page;
  const std::string result = page ? page->result : "";
  return {result, TypingSteps(model, result, melody)};
}

// Melodies that parse, whether or not a phone can play them.
std::vector<std::string> OddMelodies() {
  std::mt19937 random(2002);
  const std::vector<std::string> parts[] = {
      {"", "2", "16", "3", "64", "81"},
      {"c", "h", "p", "p#", "x", "*", "r", "9", "0", "(", ")", "e#", "#", "."},
      {"", "#", ".", ".#"},
      {"", "1", "4", "5", "6", "8"}};
  std::vector<std::string> melodies(150, "x:d=4,o=5,b=125:");
  for (std::string& melody : melodies) {
    for (std::size_t notes = 1 + random() % 50; notes > 0; --notes) {
      for (const std::vector<std::string>& part : parts) {
        melody += part[random() % part.size()];
      }
      melody += ',';
    }
  }
  return melodies;
}

// One model of each format of key presses.
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

TEST(TypingSteps, JoinedAreTheResultAndSpeakOfEveryNoteInItsTurn) {
  std::vector<std::string> melodies = OddMelodies();
  melodies.push_back("x:d=4,o=10,b=125:c8,c8,c8,c7,c7,c7,c,c#");  // iMelody keys with an octave 10
  const std::size_t odd = melodies.size();
  std::ranges::copy(Melodies(), std::back_inserter(melodies));
  int converted = 0;
  for (std::size_t i = 0; i < melodies.size(); ++i) {
    const std::string& melody = melodies[i];
    for (const std::string_view model : kModels) {
      const auto [result, steps] = ConvertAndTakeApart(melody, model);
      ASSERT_EQ(Joined(steps), result) << melody << model;
      converted += result.empty() ? 0 : 1;
      int last = -1;
      for (const TypingStep& step : steps) {
        std::string pressed;
        for (const auto& [key, times, hold] : step.keys) {
          pressed +=
              hold ? std::string{'(', key, ')'} : std::string(static_cast<std::size_t>(times), key);
        }
        ASSERT_TRUE(pressed == step.group || step.group == "()" + pressed) << step.group << model;
        ASSERT_FALSE(step.words.empty()) << melody << model;
        const bool dot = step.words == "silencio, en lugar del puntillo";
        ASSERT_TRUE(i < odd || step.note == last + (dot ? 0 : 1)) << melody << model;
        last = step.note;
        for (const KeyPress& press : step.keys) {
          const auto types = [&press](const KeypadKey& key) {
            return key.signs.find(press.key) != key.signs.npos;
          };
          ASSERT_TRUE(i < odd || std::ranges::any_of(FindKeypad(model)->keys, types))
              << press.key << model;
        }
      }
      ASSERT_TRUE(i < odd || last + 1 == std::ranges::count(melody, ',') - 1) << melody << model;
    }
  }
  EXPECT_GT(converted, 500);
}

TEST(TypingSteps, TakeAnyTextApartInLinearTime) {
  const core::RTTTLMelody melody = ParsedMelody("c,p");
  for (const std::string_view model : kModels) {
    for (const std::string& text : {Repeated("1 ", 100'000), std::string("(("), std::string(" "),
                                    std::string("*"), std::string()}) {
      EXPECT_EQ(Joined(TypingSteps(model, text, melody)), text) << model;
    }
  }
  EXPECT_EQ(TypingSteps(" Pulsaciones", Repeated("1 ", 100'000), melody).size(), 100'000u);
  EXPECT_TRUE(TypingSteps(" Compositor", "4c1 ", melody).empty());
  EXPECT_EQ(std::ranges::count_if(CatalogueRows(),
                                  [](const auto& row) { return FindKeypad(row.model) != nullptr; }),
            14);
}

// A simulated Nokia composer: the keys pressed and the notation on its display. Keys act at once
// and on the last note; the next note takes over its octave and duration, but not the duration of a
// pause.
std::string TypedIntoNokia(const Steps& steps) {
  struct Note {
    char letter;  // 'p' for a pause
    bool sharp, dotted;
    int octave, duration;
  };
  std::vector<Note> notes;
  int octave = 1, duration = 4;
  const auto press = [&](char key, bool held) {
    if (key >= '0' && key <= '7') {
      notes.push_back({"pcdefgab"[key - '0'], false, held, octave, duration});
      return;
    }
    Note& last = notes.back();
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
  std::string shown;
  for (const Note& note : notes) {
    shown += std::to_string(note.duration) + (note.dotted ? "." : "");
    shown += note.letter == 'p' ? "-"
                                : (note.sharp ? "#" : "") + std::string(1, note.letter) +
                                      std::to_string(note.octave);
    shown += ' ';
  }
  return shown;
}

// What the steps say and what their keys type equals the composer result of the same melody, except
// for the dots of pauses, whose key is not held.
TEST(TypingSteps, ShowAndTypeTheComposerNotation) {
  for (const bool odd : {false, true}) {
    for (const std::string& melody : odd ? OddMelodies() : Melodies()) {
      const Steps steps = ConvertAndTakeApart(melody, kModels[0]).steps;
      std::string shown, notation = ConvertAndTakeApart(melody, " Compositor").result;
      for (const TypingStep& step : steps) {
        shown += step.display + step.after;
      }
      ASSERT_EQ(shown, core::ReplaceAll(notation, ".-", "-")) << melody;
      ASSERT_TRUE(odd || TypedIntoNokia(steps) == shown) << melody;
    }
  }
}

}  // namespace tonadex::phones::typing_steps_test
