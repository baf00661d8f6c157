#include "formats/smart_messaging.h"

#include <algorithm>
#include <cmath>

#include "core/number.h"
#include "core/text.h"
#include "core/windows1252.h"
#include "formats/note_warning.h"
#include "formats/pitch.h"
#include "formats/smart_messaging_bits.h"

namespace tonadex::formats {
namespace {

using namespace core::literals;
using namespace ott;

// Instructions of a note: the octave, if it changes, and the note.
constexpr std::size_t kMostInstructions = 255, kMostPatterns = 4;
constexpr std::size_t kAlonePart = 133, kJoinedPart = 128;  // bytes of a message
constexpr int kMostDoubled = 2;

class BitWriter {
 public:
  void Put(unsigned value, int bits) {
    for (int bit = bits - 1; bit >= 0; --bit) {
      if (used_ % 8 == 0) {
        bytes_ += '\0';
      }
      const unsigned set = ((value >> bit) & 1u) << (7 - used_ % 8);
      bytes_.back() = static_cast<char>(core::Code(bytes_.back()) | set);
      ++used_;
    }
  }
  // Zero bits up to the next byte.
  void Fill() { used_ = bytes_.size() * 8; }

  std::string Bytes() const { return bytes_; }

 private:
  std::string bytes_;
  std::size_t used_ = 0;  // bits
};

struct Instruction {
  unsigned value;
  int bits;
};
using Pattern = std::vector<Instruction>;

Instruction OctaveOf(int scale) {
  return {(kScale << 2) | static_cast<unsigned>(scale), 5};
}

Instruction TempoOf(std::size_t index) {
  return {(kTempo << 5) | static_cast<unsigned>(index), 8};
}

Instruction NoteOf(unsigned value, unsigned length, bool dotted) {
  return {(kNote << 9) | (value << 5) | (length << 2) | (dotted ? 1u : 0u), 12};
}

std::size_t NearestTempo(double tempo) {
  return static_cast<std::size_t>(
      std::ranges::min_element(kTempos, {}, [tempo](int each) { return std::abs(each - tempo); }) -
      kTempos.begin());
}

void Warn(std::string& warnings, std::initializer_list<std::string_view> parts) {
  warnings.append(core::Joined(parts)).append(core::kCrLf);
}

// The patterns of the notes, each with its tempo and octave at the start.
class Patterns {
 public:
  explicit Patterns(std::size_t tempo) : tempo_(tempo) {}

  // `scale` is nullopt for a pause.
  void Add(Instruction note, std::optional<int> scale) {
    if (patterns_.empty() || patterns_.back().size() + kMostDoubled > kMostInstructions) {
      patterns_.push_back({TempoOf(tempo_)});
      scale_.reset();
    }
    if (scale && scale != scale_) {
      patterns_.back().push_back(OctaveOf(*scale));
      scale_ = scale;
    }
    patterns_.back().push_back(note);
  }

  const std::vector<Pattern>& All() const { return patterns_; }

 private:
  std::size_t tempo_;
  std::optional<int> scale_;
  std::vector<Pattern> patterns_;
};

// The scale of an octave, 0 to 3; counts those that have none.
int ScaleOf(double octave, int& moved) {
  const double scale = std::clamp<double>(octave - kLowestOctave, 0, kScales - 1);
  moved += scale == octave - kLowestOctave ? 0 : 1;
  return core::ToInt16(scale);
}

Patterns PatternsOf(const core::RTTTLMelody& melody, std::string& warnings) {
  const double tempo = core::ToNumber(melody.Beats);
  const std::size_t nearest = NearestTempo(tempo);
  if (kTempos[nearest] != tempo) {
    Warn(warnings, {"El tempo ", melody.Beats, u8" no existe en este formato: se graba "_w,
                    std::to_string(kTempos[nearest]), "."});
  }
  Patterns patterns(nearest);
  int moved = 0;
  std::size_t number = 0;
  for (const core::NoteCodes& note : melody.Notes.Codes()) {
    ++number;
    if (note.length == core::NoteCodes::kNoLength) {
      AppendNoteWarning(warnings, "La nota # ", number, kBadDuration);
    } else if (core::IsPause(note)) {
      patterns.Add(NoteOf(kPauseValue, note.length, note.dotted), std::nullopt);
    } else {
      const std::optional<int> natural = Semitone(std::string_view(&note.letter, 1));
      if (!natural) {
        AppendNoteWarning(warnings, "La nota # ", number, " no se entiende");
        continue;
      }
      const int semitone = *natural + (note.IsSharp() ? 1 : 0);
      const int octaves = semitone / kSemitones;  // 1 for a raised b
      const int scale = ScaleOf(melody.Notes.Octave(note) + octaves, moved);
      patterns.Add(
          NoteOf(static_cast<unsigned>(semitone % kSemitones) + 1, note.length, note.dotted),
          scale);
    }
  }
  if (moved > 0) {
    Warn(warnings, {u8"Fuera de las octavas 4 a 7 se graban en la más próxima: notas, "_w,
                    std::to_string(moved), "."});
  }
  return patterns;
}

std::string TitleOf(const std::string& name, std::string& warnings) {
  std::string title(core::Trim(name).substr(0, kMostTitleLetters));
  std::ranges::replace_if(
      title, [](char c) { return core::Code(c) < 0x20 || (core::Code(c) & 0xE0) == 0x80; }, '?');
  if (title != core::Trim(name)) {
    Warn(warnings, {u8"El título se graba como «"_w, title,
                    u8"»: en este formato caben 15 letras de Europa occidental."_w});
  }
  return title;
}

// `number` in hexadecimal with two digits.
std::string Hex(std::size_t number) {
  constexpr std::string_view kDigits = "0123456789ABCDEF";
  return {kDigits[number / 16 % 16], kDigits[number % 16]};
}

std::size_t MessagesFor(std::size_t bytes) {
  return bytes <= kAlonePart ? 1 : (bytes + kJoinedPart - 1) / kJoinedPart;
}

}  // namespace

std::string OttBytes(const core::RTTTLMelody& melody, std::string& warnings) {
  const Patterns patterns = PatternsOf(melody, warnings);
  const std::size_t count = patterns.All().size();
  if (count > kMostPatterns) {
    RefuseFile(
        {u8"la melodía es demasiado larga para un mensaje de Nokia: caben unas mil notas"_w});
  }
  const std::string title = TitleOf(melody.Name, warnings);
  BitWriter bits;
  bits.Put(kCommandParts, 8);
  bits.Put(kProgramming, 7);
  bits.Fill();
  bits.Put(kSound, 7);
  bits.Put(kBasicSong, 3);
  bits.Put(static_cast<unsigned>(title.size()), 4);
  for (const char c : title) {
    bits.Put(core::Code(c), 8);
  }
  bits.Put(static_cast<unsigned>(count), 8);
  for (std::size_t i = 0; i < count; ++i) {
    const Pattern& pattern = patterns.All()[i];
    bits.Put(kPattern, 3);
    bits.Put(static_cast<unsigned>(i), 2);
    bits.Put(0, 4);  // no loop
    bits.Put(static_cast<unsigned>(pattern.size()), 8);
    for (const Instruction& instruction : pattern) {
      bits.Put(instruction.value, instruction.bits);
    }
  }
  bits.Fill();
  bits.Put(0, 8);
  const std::size_t messages = MessagesFor(bits.Bytes().size());
  if (messages > 1) {
    Warn(warnings, {"Ocupa ", std::to_string(messages),
                    u8" mensajes SMS; muchos móviles no admiten más de tres."_w});
  }
  return bits.Bytes();
}

std::string ScklText(std::string_view ottBytes) {
  const std::size_t count = MessagesFor(ottBytes.size());
  const std::size_t size = count == 1 ? kAlonePart : kJoinedPart;
  std::string text;
  for (std::size_t i = 0; i < count; ++i) {
    text += count == 1 ? std::string("//SCKL1581 ")
                       : "//SCKL15811581" + Hex(0) + Hex(count) + Hex(i + 1) + " ";
    for (const char byte : ottBytes.substr(i * size, size)) {
      text += Hex(core::Code(byte));
    }
    text += core::kCrLf;
  }
  return text;
}

}  // namespace tonadex::formats
