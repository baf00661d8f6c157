#include "formats/nokia_composer.h"

#include "core/number.h"
#include "core/windows1252.h"
#include "formats/note_warning.h"
#include "formats/octave_band.h"

namespace tonadex::formats {
namespace {

using namespace core::literals;

constexpr std::size_t kMaxNotes = 50;  // capacity of the composer; more notes cause a warning
constexpr std::string_view kTooLong = u8"ERROR: La melodia excede el límite de 50 notas.\r\n"_w;
constexpr std::size_t kTokenSize = 7;  // longest token, "32.#c1 "

}  // namespace

void AppendComposerNote(const core::RTTTLNote& note, std::size_t octave, std::string& text) {
  text += note.Duration;
  if (note.Dotted) {
    text += '.';  // also for a pause: "4.-"
  }
  if (core::IsPause(note)) {
    text += '-';
  } else if (note.Note.ends_with('#')) {
    text.append("#").append(note.Note, 0, note.Note.size() - 1);
  } else {
    text += note.Note;
  }
  if (!core::IsPause(note)) {
    text += static_cast<char>('0' + octave);
  }
}

std::string NokiaComposerText(core::RTTTLMelody& melody, std::string& warnings,
                              std::int16_t baseOctave) {
  if (!core::ParseOrReport(melody)) {
    return {};
  }
  if (melody.Notes.size() > kMaxNotes) {
    warnings += kTooLong;
  }
  std::string text;
  text.reserve(melody.Notes.size() * kTokenSize);
  std::size_t number = 0;
  for (const core::RTTTLNote& note : melody.Notes) {
    ++number;
    const std::size_t octave = OctaveBand(core::ToNumber(note.Octave), baseOctave) + 1;
    if (core::IsPause(note) && note.Dotted) {
      AppendNoteWarning(warnings, "ERROR: La nota #", number, " - . no se permite en pausa");
    }
    AppendComposerNote(note, octave, text);
    text += ' ';
  }
  return text;
}

}  // namespace tonadex::formats
