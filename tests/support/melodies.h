#pragma once

#include <algorithm>
#include <fstream>
#include <iterator>
#include <random>
#include <string>
#include <vector>

#include "core/rtttl_writer.h"
#include "data/shelf.h"

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
inline std::vector<std::string> Generated() {
  std::mt19937 random(14);
  const auto number = [&random](int most) {
    return static_cast<int>(random() % static_cast<unsigned>(most));
  };
  std::vector<std::string> melodies;
  for (int i = 0; i < 200; ++i) {
    core::PlainMelody melody = {"Melodia " + std::to_string(i), 40 + number(360), {}};
    const int lowest = 4 + number(2), span = 1 + number(8 - lowest);
    for (int notes = 1 + number(120); notes >= 0; --notes) {
      melody.notes.push_back({number(8) == 0 && notes > 0 ? -1 : number(12), lowest + number(span),
                              1 << number(6), number(4) == 0});
    }
    melodies.push_back(core::RtttlText(melody));
  }
  return melodies;
}

inline std::vector<std::string> Melodies() {
  std::vector<std::string> melodies = Shelf();
  std::ranges::copy(Generated(), std::back_inserter(melodies));
  return melodies;
}

}  // namespace tonadex::test
