#include "phones/rtttl_item.h"

#include <algorithm>
#include <cstdlib>
#include <tuple>
#include <utility>

#include "core/melody_file.h"
#include "core/rtttl.h"
#include "core/text.h"
#include "core/windows1252.h"
#include "formats/note_length.h"
#include "formats/pitch.h"

namespace tonadex::phones {
namespace {

using namespace core::literals;

constexpr std::size_t kMostDigits = 3;             // longer numbers all count as 999
constexpr int kOctaveBelow = 4, kOctaveAbove = 7;  // replace octaves below 1 and above 8

struct Scanner {
  std::string_view text;
  std::size_t at = 0;

  bool AtEnd() const { return at == text.size(); }
  char Peek() const { return AtEnd() ? '\0' : text[at]; }
  std::string_view Digits() {
    const std::size_t start = at;
    while (core::IsDigit(Peek())) {
      ++at;
    }
    return text.substr(start, at - start);
  }
  void Marks(MeantNote& note) {
    for (; Peek() == '#' || Peek() == '.'; ++at) {
      (Peek() == '#' ? note.accidental = 1 : note.dotted = true);
    }
  }
  bool Letter(MeantNote& note) {
    const char c = Peek();
    if (c == 'p' || c == 'r' || c == '-') {
      note.letter = 'p';
    } else if (c >= 'a' && c <= 'h') {
      note.letter = c == 'h' ? 'b' : c;
    } else {
      return false;
    }
    ++at;
    // A following b is a flat, unless another letter follows it.
    if (note.letter != 'p' && c != 'h' && Peek() == 'b' &&
        (at + 1 == text.size() ||
         std::string_view("#.0123456789").find(text[at + 1]) != std::string_view::npos)) {
      note.accidental = -1;
      ++at;
    }
    return true;
  }
};

int Number(std::string_view digits) {
  int number = 0;
  for (const char digit : digits.substr(0, kMostDigits)) {
    number = number * 10 + (digit - '0');
  }
  return digits.size() > kMostDigits ? 999 : number;
}

std::optional<int> NumberOrNone(std::string_view digits) {
  return digits.empty() ? std::nullopt : std::optional(Number(digits));
}

bool IsOctave(int number) {
  return number >= kLowestOctave && number <= kHighestOctave;
}

// The digits at the end of an item: "c16" without a duration is a sixteenth, although the parser
// reads the last digit as the octave.
void SetLast(MeantNote& note, std::string_view digits) {
  if (!note.duration && (digits == "16" || digits == "32")) {
    note.duration = Number(digits);
  } else if (!digits.empty()) {
    const int last = digits.back() - '0';
    note.octave = IsOctave(last) ? last : Number(digits);
  }
}

// Splits the digits between two notes into the octave of the first and the duration of the second.
std::pair<std::string_view, std::string_view> SplitDigits(std::string_view digits) {
  const bool octave =
      digits != "16" && digits != "32" && !digits.empty() && digits[0] >= '4' && digits[0] <= '7';
  return {digits.substr(0, octave ? 1 : 0), digits.substr(octave ? 1 : 0)};
}

// Whether the parser reads both items as the same note.
bool ReadAlike(std::string one, std::string other) {
  core::RTTTLMelody melody;
  melody.DefaultDuration = "d";  // no item contains these values
  melody.DefaultOctave = "o";
  return core::ParseRTTTLNote(one, melody) == core::ParseRTTTLNote(other, melody);
}

// Names the parts of a note that the parser loses.
std::string_view Lost(std::string_view item, const MeantNote& note) {
  struct Loss {
    bool octave, accidental, dot;
    std::string_view words;
  };
  constexpr std::array<Loss, 4> kLosses = {{
      {true, false, false, "pierde la octava"},
      {false, true, false, "pierde el sostenido"},
      {false, false, true, "pierde el puntillo"},
      {true, true, false, "pierde el sostenido y la octava"},
  }};
  for (const Loss& loss : kLosses) {
    MeantNote less = note;
    if (loss.octave) {
      less.octave.reset();
    }
    less.accidental = loss.accidental ? 0 : less.accidental;
    less.dotted = !loss.dot && less.dotted;
    if (ReadAlike(std::string(item), ItemText(less))) {
      return loss.words;
    }
  }
  return "se lee como otra nota";
}

std::string PitchOf(const MeantNote& note) {
  return note.letter + std::string(note.accidental > 0 ? "#" : note.accidental < 0 ? "b" : "");
}

std::string NoteFault(std::string_view item, const MeantNote& note) {
  if (note.duration && !formats::IsPhoneDuration(*note.duration)) {
    return std::string(u8"la duración "_w) + Quoted(std::to_string(*note.duration)) +
           std::string(u8" no es 1, 2, 4, 8, 16 ni 32"_w);
  }
  if (note.octave && !IsOctave(*note.octave)) {
    return "la octava " + Quoted(std::to_string(*note.octave)) + " no es de 1 a 8";
  }
  if (note.accidental < 0) {
    return Quoted(item) + " lleva un bemol, que en RTTTL no existe";
  }
  if (note.letter != 'p' && !formats::Semitone(PitchOf(note))) {
    return Quoted(PitchOf(note)) + " no es ninguna nota";
  }
  if (!ReadAlike(std::string(item), ItemText(note))) {
    return Quoted(item) + " " + std::string(Lost(item, note)) + "; se escribe " +
           Quoted(ItemText(note));
  }
  return {};
}

}  // namespace

std::vector<MeantNote> NotesMeant(std::string_view item) {
  std::vector<MeantNote> notes;
  Scanner scan{item};
  MeantNote next;
  scan.Marks(next);
  std::string_view duration = scan.Digits();
  while (true) {
    MeantNote note = std::exchange(next, {});
    note.duration = NumberOrNone(duration);
    scan.Marks(note);
    if (!scan.Letter(note)) {
      return {};
    }
    scan.Marks(note);
    std::string_view digits = scan.Digits();
    scan.Marks(note);
    if (note.letter == 'p') {
      note.accidental = 0;
    }
    if (scan.AtEnd()) {
      SetLast(note, digits);
      notes.push_back(note);
      return notes;
    }
    duration = scan.Digits();
    if (duration.empty()) {
      std::tie(digits, duration) = SplitDigits(digits);
    }
    if (duration.empty()) {
      return {};  // adjacent letters are a word
    }
    note.octave = NumberOrNone(digits);
    notes.push_back(note);
  }
}

std::string ItemText(const MeantNote& note) {
  std::string text = note.duration ? std::to_string(*note.duration) : "";
  text += note.letter;
  text.append(note.accidental > 0 ? "#" : "").append(note.dotted ? "." : "");
  return note.octave ? text + std::to_string(*note.octave) : text;
}

std::string ItemFault(std::string_view item) {
  if (item.empty()) {
    return std::string(u8"está vacía"_w);
  }
  if (item.find_first_of(core::kCrLf) != item.npos) {
    return std::string(u8"lleva un salto de línea, y la melodía va en una sola"_w);
  }
  if (item.find_first_of("\t\xA0") != item.npos) {
    return std::string(u8"lleva un tabulador o un espacio especial"_w);
  }
  if (core::Contains(item, core::kSharpEscape)) {
    return std::string(u8"«juh9hay» es el «#» de los ficheros guardados y aquí se toca sin él"_w);
  }
  const std::vector<MeantNote> notes = NotesMeant(item);
  if (notes.empty()) {
    return Quoted(item) + " no es ninguna nota";
  }
  return notes.size() > 1 ? "falta una coma en " + Quoted(item) : NoteFault(item, notes.front());
}

std::string MendedItem(MeantNote note, int octave) {
  if (note.duration) {
    note.duration =
        *note.duration == 0 ? std::nullopt : std::optional(NearestDuration(*note.duration));
  }
  if (note.octave) {
    note.octave = NearestOctave(*note.octave);
  }
  if (note.accidental != 0) {
    const int semitone =
        formats::Semitone(std::string_view(&note.letter, 1)).value_or(0) + note.accidental;
    const int shift = semitone < 0 ? -1 : semitone / formats::kSemitones;
    if (shift != 0) {
      note.octave = std::clamp(note.octave.value_or(octave) + shift, kLowestOctave, kHighestOctave);
    }
    const std::string_view pitch =
        formats::kPitches[static_cast<std::size_t>(semitone - shift * formats::kSemitones)];
    note.letter = pitch.front();
    note.accidental = pitch.size() > 1 ? 1 : 0;
  }
  return ItemText(note);
}

int NearestDuration(int duration) {
  return *std::ranges::min_element(core::kLengths, {}, [duration](int known) {
    return std::pair(std::abs(known - duration), -known);
  });
}

int NearestOctave(int octave) {
  return IsOctave(octave) ? octave : octave < kLowestOctave ? kOctaveBelow : kOctaveAbove;
}

std::string CleanItem(std::string_view item) {
  std::string clean = core::ToLower(item);
  std::erase(clean, ' ');
  return clean;
}

std::string Quoted(std::string_view text, std::size_t most) {
  std::string quoted;
  quoted += u8"«"_w;
  quoted += text.substr(0, most);
  return quoted.append(text.size() > most ? u8"…»"_w : u8"»"_w);
}

}  // namespace tonadex::phones
