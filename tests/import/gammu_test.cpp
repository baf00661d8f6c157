// Another program, gammu, reads our files for Nokia phones, and its own key presses agree.
#include <gtest/gtest.h>

#include <cstdlib>

#include "core/text.h"
#include "formats/nokia_keys.h"
#include "formats/smart_messaging.h"
#include "tests/core/test_melody.h"
#include "tests/import/melodies.h"
#include "tests/support/temp_folder.h"

namespace tonadex::import {
namespace {

constexpr std::string_view kGammu = TONADEX_GAMMU;

class Gammu : public testing::Test {
 protected:
  void SetUp() override {
    if (kGammu.empty()) {
      GTEST_SKIP() << "gammu is not installed";
    }
  }
  // What it prints. It asks nothing, but would loop for ever at an octave that its composer lacks.
  std::string Run(const std::string& arguments) {
    const std::string out = (folder / "out").string();
    EXPECT_EQ(std::system(("LC_ALL=C.UTF-8 timeout 10 " + std::string(kGammu) + " " + arguments +
                           " >" + out + " 2>&1 </dev/null")
                              .c_str()),
              0)
        << folder.Read("out");
    return folder.Read("out");
  }

  test::TempFolder folder;
};

// Durations, pitches, octaves and dots; h is b.
std::string Notes(const std::string& rtttl) {
  std::string notes;
  const core::RTTTLMelody melody = test::ParsedMelody(rtttl);
  for (const core::RTTTLNote& note : melody.Notes) {
    notes.append(note.Duration).append(note.Note).append(note.Dotted ? "." : "");
    notes.append(core::IsPause(note) ? "" : note.Octave).append(",");
  }
  return notes;
}

TEST_F(Gammu, ReadsOurSmartMessages) {
  int read = 0;
  for (const std::string& rtttl : test::Shelf()) {
    SCOPED_TRACE(rtttl);
    std::string limits;
    folder.Write("m.ott", formats::OttBytes(test::ParsedMelody(rtttl), limits));
    Run("copyringtone " + (folder / "m.ott").string() + " " + (folder / "m.rtttl").string() +
        " RTTL");
    // It leaves letters with accents out of the name, maybe all.
    ASSERT_EQ(Notes("x" + folder.Read("m.rtttl")), Notes(rtttl));
    std::filesystem::remove(folder / "m.rtttl");
    ++read;
  }
  EXPECT_GT(read, 60);
}

// What key presses mean: note key, held, length level, sharp, octave. `countsOn`: the next note
// counts its length on from a pause.
std::string Meaning(std::string keys, bool countsOn) {
  core::ReplaceAll(keys, "(longer)", "!");
  std::string meaning;
  int level = 2, octave = 0;
  for (const std::string_view group : core::SplitText(keys, ' ')) {
    const std::size_t note = group.find_first_of("01234567");
    if (note == std::string_view::npos) {
      continue;
    }
    const auto times = [group](char key) {
      return static_cast<int>(std::ranges::count(group, key));
    };
    const bool pause = group[note] == '0';
    if (pause && meaning.empty()) {
      continue;
    }
    const int changed = level + times('8') - times('9');
    octave = (octave + times('*')) % 3;
    meaning += group[note] + std::to_string(changed) + (times('#') > 0 ? "#" : "");
    // A held pause is a dot that the phone does not take.
    meaning += pause ? "" : std::to_string(octave) + (times('!') + times('(') > 0 ? "." : "");
    meaning += ' ';
    level = pause && !countsOn ? level : changed;
  }
  return meaning;
}

// Gammu counts a length on from the pause before it; the phones that our keys are for return to the
// length before the pause. It also leaves out pauses before the first note. Everything else is the
// same.
TEST_F(Gammu, PressesTheSameKeysButAfterPauses) {
  int compared = 0;
  for (const std::string& rtttl : test::Shelf()) {
    core::RTTTLMelody melody = test::ParsedMelody(rtttl);
    const auto codes = melody.Notes.Codes();
    if (std::ranges::any_of(codes, [](const core::NoteCodes& note) {
          return !core::IsPause(note) && (note.octave < 5 || note.octave > 7);
        })) {
      continue;  // gammu would press "*" for ever
    }
    SCOPED_TRACE(rtttl);
    std::string notices;
    folder.Write("m.ott", formats::OttBytes(melody, notices));
    const std::string printed = Run("nokiacomposer " + (folder / "m.ott").string());
    const std::string_view before = "please press: ";
    const std::size_t at = printed.find(before) + before.size();
    ASSERT_EQ(Meaning(formats::NokiaKeyPresses(melody, notices, 5), false),
              Meaning(printed.substr(at, printed.find('\n', at) - at), true));
    ++compared;
  }
  EXPECT_GT(compared, 30);
}

}  // namespace
}  // namespace tonadex::import
