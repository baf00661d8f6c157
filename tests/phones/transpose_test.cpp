#include "phones/transpose.h"

#include <gtest/gtest.h>

#include <random>
#include <string>
#include <tuple>
#include <vector>

#include "core/rtttl.h"
#include "core/runtime_error.h"
#include "core/windows1252.h"
#include "formats/pitch.h"
#include "tests/core/table.h"
#include "tests/core/test_melody.h"

namespace tonadex::phones {
namespace {

// Every note as it sounds: duration, pitch as a number (-1 for a pause), dot.
std::vector<std::tuple<std::string, int, bool>> Played(const std::string& text) {
  core::RTTTLMelody melody;
  melody.Text = text;
  EXPECT_EQ(core::ParseRTTTL(melody), core::kParsed) << text;
  std::vector<std::tuple<std::string, int, bool>> played;
  for (const core::RTTTLNote& note : melody.Notes) {
    const int pitch = core::IsPause(note)
                          ? -1
                          : std::stoi(std::string(note.Octave)) * formats::kSemitones +
                                formats::Semitone(note.Note).value();
    played.emplace_back(note.Duration, pitch, note.Dotted);
  }
  return played;
}

std::string GeneratedMelody(std::mt19937& random) {
  const auto pick = [&random](int count) { return static_cast<int>(random() % unsigned(count)); };
  std::string text =
      "Mi vals:d=" + std::to_string(1 << pick(6)) + ",o=" + std::to_string(4 + pick(3)) + ",b=100:";
  for (int i = 0, notes = 1 + pick(60); i < notes; ++i) {
    text += i == 0 ? "" : ",";
    text += pick(2) == 0 ? std::to_string(1 << pick(6)) : "";
    const int pitch = pick(formats::kSemitones + 1);
    const bool pause = pitch == formats::kSemitones;
    text += pause ? "p" : formats::kPitches[static_cast<std::size_t>(pitch)];
    text += pick(4) == 0 ? "." : "";
    text += pause || pick(2) == 0 ? "" : std::to_string(4 + pick(3));
  }
  return text;
}

TEST(Transposed, MovesEachNoteAndComesBack) {
  std::mt19937 random(20261122);
  for (int round = 0; round < 300; ++round) {
    const std::string text = GeneratedMelody(random);
    const int semitones = static_cast<int>(random() % 49) - 24;
    SCOPED_TRACE(text + " by " + std::to_string(semitones));
    std::string moved;
    const auto before = Played(text);
    try {
      moved = Transposed(text, semitones);
    } catch (const core::RunTimeError&) {
      ADD_FAILURE() << "octaves 2 to 8 are within reach";
      continue;
    }
    auto want = before;
    for (auto& [duration, pitch, dotted] : want) {
      pitch += pitch < 0 ? 0 : semitones;
    }
    EXPECT_EQ(Played(moved), want);
    EXPECT_EQ(Played(Transposed(moved, -semitones)), before);
    EXPECT_EQ(Transposed(Transposed(moved, -semitones), semitones), moved);
  }
}

TEST(Transposed, WritesWhatAPersonWouldOrSaysWhyNot) {
  for (const test::Row& row : test::Table("Transposed")) {
    std::string result;
    try {
      result = Transposed(row[0], std::stoi(row[1]));
    } catch (const core::RunTimeError& error) {
      result = core::ToUtf8(error.what());
    }
    EXPECT_EQ(result, row[2]) << row[0] << " by " << row[1];
  }
}

}  // namespace
}  // namespace tonadex::phones
