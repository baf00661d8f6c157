#pragma once

#include <fstream>
#include <random>
#include <string>
#include <vector>

#include "core/rtttl_writer.h"
#include "data/shelf.h"
#include "formats/pitch.h"
#include "tests/core/test_melody.h"

// Melodies for tests of the formats.
namespace tonadex::test {

inline std::vector<std::string> Shelf() {
  std::ifstream table(TONADEX_SHELF);
  std::vector<std::string> melodies;
  for (const data::ShelfRow& row : data::ReadShelf(table)) {
    melodies.push_back(row.rtttl);
  }
  return melodies;
}

// Random notes of every duration and pitch, and pauses, with octaves and tempos that phones
// support.
inline core::PlainMelody AnyMelody(std::mt19937& random, int lowest = 4, int highest = 7) {
  const auto number = [&random](int most) {
    return static_cast<int>(random() % static_cast<unsigned>(most));
  };
  core::PlainMelody melody = {"Melodia " + std::to_string(number(200)), 40 + number(360), {}};
  lowest += number(highest - lowest + 1);
  const int span = highest - lowest + 1, lengths = 1 + number(6);
  for (int notes = 1 + number(120); notes >= 0; --notes) {
    const bool pause = number(8) == 0 && notes > 0;
    melody.notes.push_back({pause ? -1 : number(12), pause ? 5 : lowest + number(span),
                            32 >> number(lengths), number(4) == 0});
  }
  return melody;
}

// The notes of an RTTTL text.
inline std::vector<core::PlainNote> PlainNotes(const std::string& rtttl) {
  const core::RTTTLMelody melody = ParsedMelody(rtttl);
  std::vector<core::PlainNote> notes;
  for (const core::NoteCodes& note : melody.Notes.Codes()) {
    const bool pause = core::IsPause(note);
    notes.push_back({pause ? -1 : formats::SemitoneOf(note), pause ? 5 : note.octave, note.duration,
                     note.dotted});
  }
  return notes;
}

inline std::vector<std::string> Melodies() {
  std::vector<std::string> melodies = Shelf();
  std::mt19937 random(14);
  for (int i = 0; i < 200; ++i) {
    melodies.push_back(core::RtttlText(AnyMelody(random)));
  }
  return melodies;
}

}  // namespace tonadex::test
