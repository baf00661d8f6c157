#include "nokia3210/cnote.h"

#include <algorithm>
#include <array>

namespace tonadex::nokia3210 {
namespace {

struct DurationRow {
  std::string_view text;
  std::uint8_t duration;
};

constexpr std::array<DurationRow, 6> kDurations = {
    {{"32", 32}, {"16", 16}, {"8", 8}, {"4", 4}, {"2", 2}, {"1", 1}}};

std::string_view DurationText(std::uint8_t duration) {
  const auto* row = std::ranges::find(kDurations, duration, &DurationRow::duration);
  return row == kDurations.end() ? "" : row->text;
}

// The digit of the RTTTL octave: mark '0' is octave 4.
constexpr char RTTTLOctave(char mark) {
  return static_cast<char>(mark + 4);
}

// Dot and sharp first, then the letter: "8.#c2".
void AppendComposerNote(std::string& text, const cNote& note) {
  text += DurationText(note.Duration);
  if (note.Dotted) {
    text += '.';
  }
  if (note.IsPause()) {
    text += '-';
    return;
  }
  if (note.Sharp) {
    text += '#';
  }
  text += note.Letter;
  text += note.Octave;
}

// The octave comes last: the RTTTL parser would not recognise it before a dot.
void AppendRTTTLNote(std::string& text, const cNote& note, const Defaults& defaults) {
  const std::string_view duration = DurationText(note.Duration);
  if (duration != defaults.Duration) {
    text += duration;
  }
  text += note.Letter;
  if (note.Sharp) {
    text += '#';
  }
  if (note.Dotted) {
    text += '.';
  }
  const char octave = RTTTLOctave(note.Octave);
  if (!note.IsPause() && defaults.Octave != std::string_view(&octave, 1)) {
    text += octave;
  }
}

}  // namespace

std::string cNote::Full_ComposerNote() const {
  std::string text;
  AppendComposerNote(text, *this);
  return text;
}

std::string cNote::Full_RTTTLNote() const {
  std::string text;
  AppendRTTTLNote(text, *this, {.Duration = "", .Octave = ""});
  return text;
}

std::string cNote::NoteBatch(std::span<const cNote> notes, NoteKind kind,
                             const Defaults& defaults) {
  std::string text;
  for (const cNote& note : notes) {
    if (kind == NoteKind::kComposer) {
      text += text.empty() ? "" : " ";
      AppendComposerNote(text, note);
    } else {
      text += text.empty() ? "" : ",";
      AppendRTTTLNote(text, note, defaults);
    }
  }
  return text;
}

std::uint8_t DurationOf(std::string_view text) {
  const auto* row = std::ranges::find(kDurations, text, &DurationRow::text);
  return row == kDurations.end() ? std::uint8_t{0} : row->duration;
}

}  // namespace tonadex::nokia3210
