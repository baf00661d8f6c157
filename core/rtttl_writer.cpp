#include "core/rtttl_writer.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <span>

#include "core/windows1252.h"

namespace tonadex::core {
namespace {

// The values that the header can have. Where several make the text equally short the first is
// taken, so the usual ones come first.
constexpr std::array kDefaultLengths = {4, 8, 16, 32, 2, 1};
constexpr std::array kDefaultOctaves = {5, 6, 4, 7, 3, 2, 8, 1};

constexpr std::string_view kNoName = u8"melodía"_w;

constexpr int Digits(int length) {
  return length < 10 ? 1 : 2;
}

// The characters that the notes save when this is the default, less those that the header takes.
int Saved(std::span<const PlainNote> notes, int length) {
  const auto count = std::ranges::count(notes, length, &PlainNote::length);
  return (static_cast<int>(count) - 1) * Digits(length);
}

auto NotesInOctave(std::span<const PlainNote> notes, int octave) {
  return std::ranges::count_if(notes, [octave](const PlainNote& note) {
    return note.semitone >= 0 && note.octave == octave;
  });
}

std::string NameOf(const PlainMelody& melody) {
  std::string name = melody.name;
  std::ranges::replace_if(
      name, [](char c) { return c == ':' || c == '\r' || c == '\n'; }, ' ');
  const bool blank = std::ranges::all_of(name, [](char c) { return c == ' '; });
  return blank ? std::string(kNoName) : name;
}

std::string ItemText(const PlainNote& note, int defaultLength, int defaultOctave) {
  std::string item = note.length == defaultLength ? "" : std::to_string(note.length);
  const bool pause = note.semitone < 0;
  item += pause ? "p" : kPitches.at(static_cast<std::size_t>(note.semitone));
  item += note.dotted ? "." : "";
  return pause || note.octave == defaultOctave ? item : item + std::to_string(note.octave);
}

}  // namespace

std::string RtttlText(const PlainMelody& melody) {
  const std::span<const PlainNote> notes = melody.notes;
  const int length = *std::ranges::max_element(
      kDefaultLengths, {}, [&](int candidate) { return Saved(notes, candidate); });
  const int octave = *std::ranges::max_element(
      kDefaultOctaves, {}, [&](int candidate) { return NotesInOctave(notes, candidate); });
  std::string text = NameOf(melody) + ":d=" + std::to_string(length) +
                     ",o=" + std::to_string(octave) + ",b=" + std::to_string(melody.tempo) + ":";
  for (std::size_t i = 0; i < notes.size(); ++i) {
    text += (i == 0 ? "" : ",") + ItemText(notes[i], length, octave);
  }
  return text;
}

}  // namespace tonadex::core
